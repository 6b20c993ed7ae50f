// Empty: the target that compiles the test framework's headers needs a source.
