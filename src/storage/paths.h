// paths.h: where the executable and the plain asset tree lie, the making of directories, and what may be
// opened. Knows nothing of what is kept in the files. Paths are byte strings with slashes, used as they are
// built.
#pragma once

#include <optional>
#include <string>

namespace paths {

// The variable's value; `fallback` if it is unset or empty.
std::string envOr(const char* name, const std::string& fallback = "");

// The directory of the running executable without a trailing slash, "." if the system does not tell.
// Empty for an executable that lies in the root directory.
std::string exeDir();

// The root below which assets/fonts and assets/audio lie, looked for once: in a snap, in an AppImage, in
// VESKARA_ASSET_DIR, where packages install, beside the executable, in the working directory. A root with
// only one of the two directories does not count. exeDir() if there is none.
std::string assetDir();

// The path of a file of the asset tree, `name` being relative to assets/. It need not exist.
std::string asset(const std::string& name);

// Creates `path` with its missing ancestors, mode 0755. A backslash separates like a slash. Says nothing
// about failure: whoever writes into the directory notices.
void ensureDir(const std::string& path);

// Whether a plain file is there, links followed. Nothing else can be read safely: a pipe makes whoever opens
// it wait, and a device may never come to its end.
bool isFile(const std::string& path);

// The whole of a plain file; nothing if there is none, or if it cannot be read to its end.
std::optional<std::string> readFile(const std::string& path);

// Takes a pipe away from where a file is to be written: whoever opened it would wait for a reader. False if
// it stays.
bool removePipe(const std::string& path);

}  // namespace paths
