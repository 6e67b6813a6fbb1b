#include "store/store_problem.h"

#include <cerrno>

namespace qx9 {

StoreProblem problemOf(const sqlite::Failure& failure) {
    switch (failure.code & 0xFF) {  // the primary result code
        case SQLITE_OK: return StoreProblem::kNone;
        case SQLITE_BUSY:
        case SQLITE_LOCKED: return StoreProblem::kInUse;
        case SQLITE_READONLY:
        case SQLITE_PERM: return StoreProblem::kNotWritable;
        case SQLITE_FULL: return StoreProblem::kDiskFull;
        case SQLITE_NOTADB:
        case SQLITE_CORRUPT: return StoreProblem::kDamaged;
        default: break;
    }
    switch (failure.systemErrno) {
        case EACCES:
        case EPERM:
        case EROFS: return StoreProblem::kNotWritable;
        case ENOSPC:
        case EDQUOT:
        case EFBIG: return StoreProblem::kDiskFull;
        default: return StoreProblem::kOther;
    }
}

const char* describe(StoreProblem problem) {
    switch (problem) {
        case StoreProblem::kNone: return "no problem";
        case StoreProblem::kInUse: return "in use by another program; try again when it has finished";
        case StoreProblem::kNotWritable: return "the file or its folder is not writable";
        case StoreProblem::kDiskFull: return "the disk is full; make room and try again";
        case StoreProblem::kDamaged: return "the file is damaged or not a database";
        case StoreProblem::kNotOurs: return "the file is empty or another program's database, not this application's";
        case StoreProblem::kOther: break;
    }
    return "the database reported an error";
}

}  // namespace qx9
