// What the libraries below the window system keep until the end of the process is no leak of ours.
extern "C" const char* __lsan_default_suppressions();

extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig\n"; }
