#include "cli/rescue.h"

namespace kestrova::cli {
report::RescueResult rescue(const RescueTask& task, FileManager& files) {
  return report::rescueFiles({.sources = task.sources, .files = task.files, .folder = task.folder}, files);
}
}  // namespace kestrova::cli
