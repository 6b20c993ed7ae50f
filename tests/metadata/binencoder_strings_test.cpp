#include "tqbinning/binencoder.h"

#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "metadata/vocabulary.h"

namespace {

using metadata::CopiesOf;
using metadata::Give;
using metadata::Labels;
using metadata::Shown;
using metadata::ShownWhenFlushedLast;
using metadata::StringMissing;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kNoCode = -1.0;

BINStringEncoder Strings(const std::vector<std::string>& values) {
  return BINStringEncoder(values);
}

// The category of every code, in the order of the codes.
std::vector<std::string> Categories(const BINStringEncoder& encoder) {
  std::vector<std::string> values;
  for (int c = 0; c < encoder.GetNumberOfCategories(); ++c) values.push_back(encoder.Decode(c));
  return values;
}

// A string encoder in which every field has been used.
BINStringEncoder FullStringEncoder() {
  BINStringEncoder encoder(std::vector<std::string>{"b", "a"});
  encoder.SetValueLabels({"second", "first"});
  EXPECT_TRUE(Give(encoder, StringMissing({"N/A"})));
  return encoder;
}

TEST(BINStringEncoder, ANewEncoderIsEmpty) {
  const BINStringEncoder encoder(5);
  EXPECT_EQ(3, encoder.GetEncoderType());
  EXPECT_EQ(0, encoder.GetNumberOfCategories());
  EXPECT_THAT(Labels(encoder), IsEmpty());
  EXPECT_EQ(nullptr, encoder.GetUserMissingInfo());
  EXPECT_EQ("", encoder.Decode(0));
}

TEST(BINStringEncoder, TheCapacityHintLimitsNothing) {
  for (const int hint : {0, 1, -1, std::numeric_limits<int>::min()}) {
    BINStringEncoder encoder(hint);
    EXPECT_EQ(0.0, encoder.Encode("x"));
    EXPECT_EQ(1.0, encoder.Encode("y"));
    EXPECT_EQ(2, encoder.GetNumberOfCategories());
  }
}

TEST(BINStringEncoder, CodesFollowTheOrderOfFirstAppearance) {
  BINStringEncoder encoder(0);
  EXPECT_EQ(0.0, encoder.Encode("b"));
  EXPECT_EQ(1.0, encoder.Encode("a"));
  EXPECT_EQ(0.0, encoder.Encode("b"));
  EXPECT_EQ(2, encoder.GetNumberOfCategories());
  EXPECT_EQ("b", encoder.Decode(0));
  EXPECT_EQ("a", encoder.Decode(1));
  EXPECT_EQ("", encoder.Decode(2));
}

TEST(BINStringEncoder, AnEncoderBuiltFromStringsHasEncodedThemInOrder) {
  EXPECT_THAT(Categories(Strings({"b", "a", "b", "c"})), ElementsAre("b", "a", "c"));
  EXPECT_EQ(0, Strings({}).GetNumberOfCategories());
}

TEST(BINStringEncoder, TheEmptyStringIsACategoryOfItsOwn) {
  BINStringEncoder encoder = Strings({"a"});
  EXPECT_EQ(kNoCode, encoder.EncodeConst(""));
  EXPECT_EQ(1.0, encoder.Encode(""));
  EXPECT_EQ(1.0, encoder.EncodeConst(""));
  EXPECT_EQ(2, encoder.GetNumberOfCategories());
}

TEST(BINStringEncoder, StringsAreComparedByteByByteWithoutTrimming) {
  const BINStringEncoder encoder =
      Strings({"a", "A", "a ", " a", "ab", std::string("a\0", 2), "\xc3\xa4"});
  EXPECT_EQ(7, encoder.GetNumberOfCategories());
  EXPECT_EQ(5.0, encoder.EncodeConst(std::string("a\0", 2)));
  EXPECT_EQ(std::string("a\0", 2), encoder.Decode(5));
  EXPECT_EQ(6.0, encoder.EncodeConst("\xc3\xa4"));
}

TEST(BINStringEncoder, EncodeConstOfAnUnseenStringDoesNotAddItAndEncodeDoes) {
  BINStringEncoder encoder = Strings({"a"});
  EXPECT_EQ(kNoCode, encoder.EncodeConst("z"));
  EXPECT_EQ(1, encoder.GetNumberOfCategories());
  EXPECT_EQ(1.0, encoder.Encode("z"));
  EXPECT_EQ(1.0, encoder.EncodeConst("z"));
}

TEST(BINStringEncoder, DecodeOutsideTheCodesIsTheEmptyString) {
  const BINStringEncoder encoder = Strings({"a", "b"});
  for (const int code :
       {-1, 2, 3, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    EXPECT_EQ("", encoder.Decode(code)) << code;
  }
}

TEST(BINStringEncoder, AUserMissingStringHasNoCodeEvenWhenItWasEncodedBefore) {
  BINStringEncoder encoder = Strings({"a", "N/A", "b"});
  ASSERT_TRUE(Give(encoder, StringMissing({"N/A", "?"})));
  for (const char* value : {"N/A", "?"}) {
    EXPECT_EQ(kNoCode, encoder.Encode(value));
    EXPECT_EQ(kNoCode, encoder.EncodeConst(value));
  }
  EXPECT_EQ(2.0, encoder.Encode("b"));
  EXPECT_THAT(Categories(encoder), ElementsAre("a", "N/A", "b"));
}

TEST(BINStringEncoder, AClearedDefinitionGivesTheStringItsCodeBack) {
  BINStringEncoder encoder = Strings({"a", "N/A"});
  ASSERT_TRUE(Give(encoder, StringMissing({"N/A"})));
  EXPECT_TRUE(encoder.SetUserMissingInfo(nullptr));
  EXPECT_EQ(1.0, encoder.EncodeConst("N/A"));
}

TEST(BINStringEncoder, ManyStringsKeepTheirCodes) {
  BINStringEncoder encoder(2);
  for (int i = 0; i < 1000; ++i) EXPECT_EQ(i, encoder.Encode("s" + std::to_string(1000 - i)));
  for (int i = 0; i < 1000; ++i) EXPECT_EQ("s" + std::to_string(1000 - i), encoder.Decode(i));
}

TEST(BINStringEncoder, CreateLinksMayBeCalledAtAnyTime) {
  BINStringEncoder encoder = Strings({"b", "a", "c"});
  encoder.CreateLinks();
  encoder.CreateLinks();
  EXPECT_THAT(Categories(encoder), ElementsAre("b", "a", "c"));
  encoder.Encode("d");
  EXPECT_THAT(Categories(encoder), ElementsAre("b", "a", "c", "d"));
  BINStringEncoder empty(0);
  empty.CreateLinks();
  EXPECT_EQ("", empty.Decode(0));
}

TEST(BINStringEncoder, EveryCopyHasCategoriesLabelsAndDefinition) {
  const BINStringEncoder source = FullStringEncoder();
  for (const auto& copy : CopiesOf(source, Strings({"x", "y", "z"}))) {
    EXPECT_THAT(Categories(*copy), ElementsAre("b", "a"));
    EXPECT_EQ(1.0, copy->EncodeConst("a"));
    EXPECT_EQ(kNoCode, copy->EncodeConst("x"));
    EXPECT_THAT(Labels(*copy), ElementsAre("second", "first"));
    EXPECT_EQ(kNoCode, copy->Encode("N/A"));
    EXPECT_NE(source.GetUserMissingInfo(), copy->GetUserMissingInfo());
    EXPECT_TRUE(source.GetUserMissingInfo()->IsEqualTo(copy->GetUserMissingInfo()));
    EXPECT_EQ(2.0, copy->Encode("c"));
  }
}

// Its codes must point at keys of its own: those of the source are gone here.
TEST(BINStringEncoder, EveryCopyDecodesAfterItsSourceIsGone) {
  std::vector<std::unique_ptr<BINStringEncoder>> copies;
  {
    const BINStringEncoder source =
        Strings({"a string too long to be stored inside its object", "a"});
    copies = CopiesOf(source, Strings({"x"}));
  }
  for (const auto& copy : copies) {
    EXPECT_THAT(Categories(*copy),
                ElementsAre("a string too long to be stored inside its object", "a"));
  }
}

TEST(BINStringEncoder, NoCopyReachesItsSource) {
  const BINStringEncoder source = FullStringEncoder();
  for (const auto& copy : CopiesOf(source, Strings({}))) {
    copy->Encode("c");
    copy->SetValueLabel(0, "changed");
    EXPECT_TRUE(copy->SetUserMissingInfo(nullptr));
  }
  EXPECT_THAT(Categories(source), ElementsAre("b", "a"));
  EXPECT_THAT(Labels(source), ElementsAre("second", "first"));
  EXPECT_EQ(1, source.GetUserMissingInfo()->GetNDiscreteValues());
}

TEST(BINStringEncoder, SelfAssignmentKeepsEverything) {
  BINStringEncoder encoder = FullStringEncoder();
  const BINStringEncoder& itself = encoder;
  encoder = itself;
  EXPECT_THAT(Categories(encoder), ElementsAre("b", "a"));
  EXPECT_THAT(Labels(encoder), ElementsAre("second", "first"));
  EXPECT_EQ(kNoCode, encoder.Encode("N/A"));
}

TEST(BINStringEncoder, AnEmptyEncoderShowsItsLastCodeOnly) {
  EXPECT_EQ("\tBINStringEncoder object:  Last code = -1\n", Shown(BINStringEncoder(4)));
}

TEST(BINStringEncoder, EveryStringIsShownOnALineWithItsCode) {
  EXPECT_EQ(
      "\tBINStringEncoder object:  Last code = 1\n"
      "\t\t0\t\tb\n"
      "\t\t1\t\ta\n",
      Shown(Strings({"b", "a"})));
}

TEST(BINStringEncoder, TheDefinitionIsShownLastAndLabelsAreNot) {
  const BINStringEncoder encoder = FullStringEncoder();
  EXPECT_EQ(
      "\tBINStringEncoder object:  Last code = 1\n"
      "\t\t0\t\tb\n"
      "\t\t1\t\ta\n"
      "\t\tUser-missing values for this encoder:\n\t\t" +
          Shown(*encoder.GetUserMissingInfo()),
      Shown(encoder));
}

TEST(BINStringEncoder, TheDumpEndsInAFlushAndReturnsItsStream) {
  const BINStringEncoder encoder = Strings({"b", "a"});
  EXPECT_EQ(Shown(encoder), ShownWhenFlushedLast(encoder));
  std::ostringstream os;
  EXPECT_EQ(&os, &encoder.Display(os));
}

}  // namespace

// The links are private, and no way of filling an encoder leaves one out; an explicit
// instantiation may name a private member.
template <auto Links>
struct LinksOf {
  friend std::vector<const std::string*>& LinksIn(BINStringEncoder& encoder) {
    return encoder.*Links;
  }
};
template struct LinksOf<&BINStringEncoder::fLinks>;
std::vector<const std::string*>& LinksIn(BINStringEncoder& encoder);

TEST(BINStringEncoder, ACodeWithoutALinkIsShownAsAnError) {
  BINStringEncoder encoder(std::vector<std::string>{"a", "b", "c"});
  LinksIn(encoder)[1] = nullptr;
  EXPECT_EQ(
      "\tBINStringEncoder object:  Last code = 2\n"
      "\t\t0\t\ta\n"
      "\t\t1\t\tERROR\n"
      "\t\t2\t\tc\n",
      metadata::Shown(encoder));
  encoder.CreateLinks();
  EXPECT_EQ("b", encoder.Decode(1));
}
