#pragma once

#include <sqlite3.h>

/// A VFS of SQLite that forwards every operation to the system's; the users of this header replace some.
namespace ForwardedFiles {

/// SQLite's file object: ours first, the system's behind it in the same memory.
struct File
{
    sqlite3_file base;
    int number; ///< free for the user

    static File *of(sqlite3_file *file) { return reinterpret_cast<File *>(file); }
    sqlite3_file *real() { return reinterpret_cast<sqlite3_file *>(this + 1); }
};

/// The system's VFS. Call it before install() for the first time.
sqlite3_vfs *system();

/// Operations on a file that forward to the system's file behind it.
sqlite3_io_methods methods();

using Open = int (*)(sqlite3_vfs *, const char *, sqlite3_file *, int, int *);
using Delete = int (*)(sqlite3_vfs *, const char *, int);

/// Replaces SQLite's default VFS. `name` must stay valid. Call once per process.
void install(const char *name, Open open, Delete remove);

} // namespace ForwardedFiles
