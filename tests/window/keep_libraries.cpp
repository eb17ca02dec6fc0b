// Preloaded into the game under the leak sanitizer. Keeps libraries loaded until the process ends: then
// memory that a library keeps is still reachable, and leaks can be attributed to it by name.

extern "C" int dlclose(void* /*library*/) { return 0; }
