#pragma once

/// Makes file operations of SQLite fail, for every connection of this process that is opened after
/// install(). Operations of all threads count; one fault is set at a time.
namespace FaultyFiles {

enum Operation { Write, Sync, Lock, BusyLock, Truncate, Delete, OpenJournal, OperationCount };
enum Duration { Once, UntilCleared };

/// Replaces SQLite's default VFS by one that injects faults. Call once per process.
void install();

/// Makes the k-th operation of that kind from now on fail (the first is 1), and all later ones if the fault
/// lasts. A BusyLock fails as if another process held the lock, all others as a broken disk does.
void fail(Operation operation, int k, Duration duration);
void clear();

/// Whether the fault that was set last has occurred, also after clear().
bool hasStruck();

} // namespace FaultyFiles
