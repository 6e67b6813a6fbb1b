#pragma once

#include "store/sqlite_handle.h"

namespace qx9 {

// Why the database file could not be used, as far as the user can do something about it.
enum class StoreProblem {
    kNone,
    kInUse,        // another program holds it locked
    kNotWritable,  // the file or its folder cannot be written
    kDiskFull,     // no room left on the disk (or the file size limit reached)
    kDamaged,      // not a database, or its pages are damaged
    kNotOurs,      // empty, or another program's database: left untouched
    kOther,        // an error of another kind (SQLite's message says which)
};

// The problem behind a failed SQLite call, from its result code and errno.
StoreProblem problemOf(const sqlite::Failure& failure);

// One phrase in English for qx9ctl ("in use by another program; …").
const char* describe(StoreProblem problem);

// A cause worth naming to the user (not none, not an error of another kind).
inline bool namesACause(StoreProblem problem) {
    return problem != StoreProblem::kNone && problem != StoreProblem::kOther;
}

// Only a damaged or foreign file is to be moved aside; the others go away on their own or when
// the user makes room, ends the other program, or gives write access.
inline bool moveAsideHelps(StoreProblem problem) {
    return problem == StoreProblem::kDamaged || problem == StoreProblem::kNotOurs;
}

}  // namespace qx9
