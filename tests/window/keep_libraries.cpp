// Preloaded into the game under the leak sanitizer: no library is unloaded before the process ends, so that
// what a library leaves behind is still held by its variables, or can be told by its name.

extern "C" int dlclose(void* /*library*/) { return 0; }
