// nvtool undo FOLDER NUMBER [--force]: the company as it was before its last import, from
// the backup that import made (import/frame/import_backup.h).
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace nv {

// args after "undo". 0 restored; 1 nothing restored (no backup, in use, changed since the
// import without --force, a failed step: the message says which); 2 a usage error.
int RunUndoCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace nv
