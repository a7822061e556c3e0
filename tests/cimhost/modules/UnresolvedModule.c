/* A module that cannot be loaded: nobody has this function. */
int functionThatNobodyHas(void);

__attribute__((visibility("default"))) int callIt(void) { return functionThatNobodyHas(); }
