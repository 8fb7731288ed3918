#include "app/organise_manager.h"
#include "platform/file_url.h"
#include "platform/log.h"

namespace kestrova {

void OrganiseManager::resizeOperation(const OperationRecord& record) {
  appStatus = 3;
  try {
    resizeRecord(record);
  } catch (const std::exception& error) {
    haltForException(QStringLiteral("EXCEPTION resizeOperation : "), error);
  }
}

void OrganiseManager::resizeRecord(const OperationRecord& record) {
  const auto operation = record.operation();
  if (operation && operation->isCancelled()) return;
  const Path from = record.file("from").value_or(Path());
  const Path to = record.file("to").value_or(Path());
  prepareFolderOf(to);
  copyFile(from, to);
}

}  // namespace kestrova
