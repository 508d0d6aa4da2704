// A library for the tests of loading: it has one symbol to find and one that nobody defines.
void zyr_test_undefinedFunction(void);

int zyr_test_answer(void) {
    return 42;
}

void zyr_test_callUndefinedFunction(void) {
    zyr_test_undefinedFunction();
}
