#pragma once

/// Makes file operations of SQLite fail, for every connection of this process that is opened after
/// install(). Operations of all threads count; one fault is set at a time.
namespace FaultyFiles {

enum Operation { Write, Sync, Lock, BusyLock, Truncate, Delete, OperationCount };
enum Duration { Once, UntilCleared };

/// Puts itself between SQLite and the operating system. Once a process.
void install();

/// Lets the k-th operation of that kind from now on fail (the first is 1), and those behind it if the fault
/// lasts. A BusyLock fails as if another process held the lock, all others as a broken disk does.
void fail(Operation operation, int k, Duration duration);
void clear();

/// Whether the fault that was set last has struck, also after clear().
bool hasStruck();

} // namespace FaultyFiles
