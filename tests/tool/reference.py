"""A plain second implementation of what tqbin computes, to hold its JSON against.

It knows nothing of the library: it reads the CSV with Python's own reader, counts
with dictionaries and searches every possible cut.  Slow, short and obvious on
purpose.  Returned cuts, counts and totals must be equal to the tool's; entropies may
differ in the last digits, since sums are formed in another order.
"""

import csv
import math

MISSING_TOKENS = {"", "NA", "N/A", "NaN", "nan", "NULL", "null", "?", "."}
LN2 = 0.6931471805599453


def log2(x):
    return math.log(x) / LN2


class Column:
    """The cases of one attribute that count: (value, category, weight)."""

    def __init__(self):
        self.cases = []
        self.weight_with_missing = 0.0


def round_weight(weight, rule):
    """The weight to use, or None for a case that is left out."""
    if weight is None:
        return None
    if rule == "down":
        weight = math.floor(weight)
    elif rule == "closest":
        weight = math.floor(weight + 0.5)
    return float(weight) if weight > 0 else None


def read_columns(path, attributes, target=None, weight=None, rounding="closest",
                 user_missing=lambda name, value: False):
    """Reads the cases of every attribute, and the target's categories, sorted."""
    columns = {name: Column() for name in attributes}
    categories = set()
    with open(path, newline="", encoding="utf-8") as file:
        for row in csv.DictReader(file):
            row = {name: text.strip(" \t") for name, text in row.items()}

            def number(name):
                text = row[name]
                return None if text in MISSING_TOKENS else float(text)

            category = row[target] if target else None
            if category in MISSING_TOKENS:
                category = None
            elif target:
                categories.add(category)
            case_weight = round_weight(number(weight), rounding) if weight else 1.0
            if case_weight is None:
                continue
            for name, column in columns.items():
                column.weight_with_missing += case_weight
                value = number(name)
                if value is None or user_missing(name, value):
                    continue
                if target and category is None:
                    continue
                column.cases.append((value, category, case_weight))
    return columns, sort_categories(categories)


def sort_categories(categories):
    try:
        return sorted(categories, key=lambda text: (float(text), text))
    except ValueError:
        return sorted(categories, key=lambda text: text.encode())


def entropy(weights):
    total = sum(weights)
    return sum(-w / total * log2(w / total) for w in weights if w > 0) if total > 0 else 0.0


def add(rows):
    return [sum(weights) for weights in zip(*rows)]


def split_entropy(left, right):
    n_left, n_right = sum(left), sum(right)
    return (n_left * entropy(left) + n_right * entropy(right)) / (n_left + n_right)


def accepts(left, right, gain, whole_entropy):
    """The minimum description length test for one split."""
    n = sum(left) + sum(right)
    k_left = sum(1 for w in left if w != 0)
    k_right = sum(1 for w in right if w != 0)
    k = k_left + k_right
    delta = (log2(3.0 ** k - 2)
             - (k * whole_entropy - k_left * entropy(left) - k_right * entropy(right)))
    return n > 1 and gain > delta / n + log2(n - 1) / n


def mdl_splits(table, first, last, splits):
    """Adds the rows before which table[first:last] is split; tries every row."""
    if last - first < 2:
        return
    whole = add(table[first:last])
    whole_entropy = entropy(whole)
    best = None
    left = [0.0] * len(whole)
    for row in range(first + 1, last):
        left = [a + b for a, b in zip(left, table[row - 1])]
        right = [a - b for a, b in zip(whole, left)]
        found = split_entropy(left, right)
        if best is None or found < best[0]:
            best = (found, row, left, right)
    found, row, left, right = best
    if not accepts(left, right, whole_entropy - found, whole_entropy):
        return
    splits.append(row)
    mdl_splits(table, first, row, splits)
    mdl_splits(table, row, last, splits)


def class_weights(cases, categories):
    weights = dict.fromkeys(categories, 0.0)
    for _, category, weight in cases:
        weights[category] += weight
    return [weights[c] for c in categories]


def percentile_cuts(cases, bins):
    """Cut points at multiples of 1/bins of the weight, the last one (all) left out."""
    weight_of = {}
    for value, _, weight in cases:
        weight_of[value] = weight_of.get(value, 0.0) + weight
    values = sorted(weight_of)
    total = sum(weight_of[v] for v in values)
    cuts = []
    for step in range(1, bins):
        wanted = step * (100.0 / bins) / 100 * total
        cumulative = 0.0
        for position, value in enumerate(values):
            cumulative += weight_of[value]
            met = abs(cumulative - wanted) <= 2.220446049250313e-16 * max(cumulative, wanted)
            if met or cumulative >= wanted:
                cut = value
                # A run of equal values that is met exactly is cut behind, half-way to
                # the next value, unless it is a cut point already.
                repeated = cumulative >= wanted and value in cuts[-1:]
                if met and not repeated and position + 1 < len(values):
                    cut = (value + values[position + 1]) / 2
                break
        if not cuts or cut != cuts[-1]:
            cuts.append(cut)
    return cuts


def interval_of(value, cuts, right_closed):
    for position, cut in enumerate(cuts):
        if value < cut or (right_closed and value == cut):
            return position
    return len(cuts)


def bins_by(cases, cuts, right_closed):
    bins = [[] for _ in range(len(cuts) + 1)]
    for case in cases:
        bins[interval_of(case[0], cuts, right_closed)].append(case)
    return bins


def merge_small(table, cuts, factor):
    """Merges inner bins lighter than factor times their lighter neighbour."""
    records = []
    for b in range(1, len(cuts)):
        weight = sum(table[b])
        if not weight < factor * min(sum(table[b - 1]), sum(table[b + 1])):
            continue
        left = split_entropy(add([table[b - 1], table[b]]), table[b + 1])
        right = split_entropy(add([table[b], table[b + 1]]), table[b - 1])
        records.append(b if right < left else b - 1)  # which goes together with the next
    for done, b in enumerate(records):
        b -= done
        table[b:b + 2] = [add(table[b:b + 2])]
        del cuts[b]
    return table, cuts


def supervised(column, categories, right_closed=True, prebin_threshold=0, prebin_bins=1000,
               min_bin_factor=0.0):
    """Cuts, class weights of every bin, and model entropy."""
    cases = sorted(column.cases, key=lambda case: case[0])
    distinct = sorted({case[0] for case in cases})
    if prebin_threshold and len(distinct) > prebin_threshold:
        borders = percentile_cuts(cases, prebin_bins)
        if right_closed and borders and borders[-1] == distinct[-1]:
            borders.pop()
        if not right_closed and borders and borders[0] == distinct[0]:
            borders.pop(0)
    else:
        borders = distinct[:-1] if right_closed else distinct[1:]
    table = [class_weights(rows, categories) for rows in bins_by_fast(cases, borders,
                                                                     right_closed)]
    splits = []
    mdl_splits(table, 0, len(table), splits)
    cuts = [borders[row - 1] for row in sorted(splits)]
    edges = [0] + sorted(splits) + [len(table)]
    counts = [add(table[a:b]) for a, b in zip(edges, edges[1:])]
    if min_bin_factor > 0 and len(cuts) > 1:
        counts, cuts = merge_small(counts, cuts, min_bin_factor)
    total = sum(case[2] for case in cases)
    model = sum(sum(row) * entropy(row) for row in counts) / total
    return cuts, counts, model


def bins_by_fast(cases, borders, right_closed):
    """bins_by for sorted cases and many borders."""
    bins = [[] for _ in range(len(borders) + 1)]
    current = 0
    for case in cases:
        while current < len(borders) and (case[0] > borders[current] or (
                not right_closed and case[0] == borders[current])):
            current += 1
        bins[current].append(case)
    return bins


def equal_frequency(column, bins, right_closed=True):
    """Cuts and weight of every bin; no bin is empty."""
    cases = column.cases
    cuts = percentile_cuts(cases, bins)
    while True:
        weights = [sum(case[2] for case in rows)
                   for rows in bins_by_fast(sorted(cases), cuts, right_closed)]
        if 0 not in weights or not cuts:
            return cuts, weights
        empty = weights.index(0)
        del cuts[min(empty, len(cuts) - 1)]
