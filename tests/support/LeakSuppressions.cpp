/// What the libraries below us keep until the process ends is no leak of ours: the first text that is laid
/// out reads the person's font settings, once and for good.
extern "C" const char* __lsan_default_suppressions();

const char* __lsan_default_suppressions() { return "leak:libfontconfig\n"; }
