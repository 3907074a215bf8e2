#include <cstring>
#include <string>

#include "ControlRequests.h"
#include "EventHandler.h"
#include "ManagerLog.h"
#include "MetadataMgr.h"
#include "ProcessState.h"
#include "store/MetadataReader.h"
#include "system/BigEndian.h"
#include "system/Messages.h"

namespace {

constexpr std::size_t kFileNameSize = 1024;
constexpr std::size_t kCopyRequestSize = kFileNameSize + 8;
constexpr unsigned int kTickAnswerSize = 8;

// Returns false, as for a failed copy, when the request is too short or its file name has no NUL.
bool CopyMetadata(MetadataMgr& manager, const IpcMessage& request) {
  const unsigned char* data = request.DataPtr();
  if (request.Size() < kCopyRequestSize || std::memchr(data, '\0', kFileNameSize) == nullptr) {
    kManagerLog(kLogMalformed, "MetadataToFileHandler: malformed request");
    return false;
  }
  const std::string destination(reinterpret_cast<const char*>(data));
  return MetadataReader().ReadToNewFile(gMetadataPath, destination, GetU32(data + kFileNameSize),
                                        GetU32(data + kFileNameSize + 4), &manager.GetWatchdog());
}

}  // namespace

void MetadataMgr::MetadataToFileHandler(LinxIpc* ipc, void* context) {
  kManagerLog(kLogTrace, "MetadataToFile");
  if (context == nullptr) {
    kManagerLog(kLogMalformed, "MetadataToFileHandler", " invalid argument");
    return;
  }
  if (ipc->CurrentMessage().DataPtr() == nullptr) {
    kManagerLog(kLogMalformed, "MetadataToFileHandler: error, DataPtr is null");
    return;
  }
  char copied = CopyMetadata(ManagerOf(context), ipc->CurrentMessage()) ? 1 : 0;
  AnswerSender(*ipc, MetadataMgrMsg_MetadataToFileResponse, sizeof copied, &copied,
               {"MetadataToFileHandler: Cannot allocate response",
                "MetadataToFileHandler: Failed to send response", kLogMalformed});
}

void MetadataMgr::GetLastSystemTickHandler(LinxIpc* ipc, void* context) {
  kManagerLog(kLogInfo, "GetLastSystemTickHandler");
  if (context == nullptr) {
    kManagerLog(kLogMalformed, "GetLastSystemTickHandler invalid argument");
    return;
  }
  const unsigned int tick = ManagerOf(context).GetLastSystemTick();
  char answer[kTickAnswerSize] = {};
  PutU32(reinterpret_cast<unsigned char*>(answer), tick);
  answer[4] = tick != Systick::kUnavailable ? 1 : 0;
  AnswerSender(*ipc, MetadataMgrMsg_GetLastSystemTickResponse, kTickAnswerSize, answer,
               {"GetLastSystemTickHandler: Cannot allocate response",
                "GetLastSystemTickHandler: Failed to send response", kLogMalformed});
}
