// Definitions of ProcessInitializer.h.

template <typename T>
bool ProcessInitializer<T>::Init(const std::string& processName, unsigned int logLevel) {
  LogClient::Instance().Level(logLevel);
  LogClient::Instance().ProcessName(processName);
  if (!SetupServer()) {
    log_(kLogError, "Init", ": Server setup failed");
    return false;
  }
  if (!managed_.PreInit(ipc_)) {
    log_(kLogError, "Init", ": PreInit failed");
    NotifyFailedStart();
    return false;
  }
  if (!NotifyStarted()) {
    log_(kLogError, "Init", ": Notification to StateMgr that we've started failed");
    return false;
  }
  return RunsWithoutStateMgr() ? managed_.SubscribeToServers(ipc_, false) : WaitForStateMgr();
}

template <typename T>
bool ProcessInitializer<T>::SetupServer() {
  if (ipc_.Init() != 0) {
    log_(kLogError, "ProcessInitializer::SetupIpc - Error initializing the Server");
    return false;
  }
  log_(kLogInfo, "ProcessInitializer::SetupIpc - Successfully initialized IPC ");
  return true;
}

template <typename T>
bool ProcessInitializer<T>::NotifyStarted() {
  if (!RunsWithoutStateMgr() && !ProcessStarted()) {
    log_(kLogError, "ProcessInitializer::SetupIpc - Error sending message to StateMgr");
    return false;
  }
  ipc_.RegisterShutdown(QuitHandler, &managed_);
  ipc_.RegisterProcessDied(ProcessDiedHandler, &managed_);
  ipc_.RegisterHandler(StateMgrProcessMsg_Restarted, ProcessRestartHandler, &managed_);
  ipc_.RegisterHandler(LogLevelMsg_Get, HandleLogLevel, &managed_);
  ipc_.RegisterHandler(LogLevelMsg_Set, HandleLogLevel, &managed_);
  return true;
}

template <typename T>
bool ProcessInitializer<T>::ProcessStarted() {
  IpcMessage notice;
  ProcessPayload payload(process_);
  if (notice.Allocate(StateMgrProcessMsg_Started, ProcessPayload::kSize, payload.Bytes()) != 0) {
    log_(kLogError, "ProcessInitializer::ProcessStarted - Error allocating request");
    return false;
  }
  return NotifyStateMgr(notice);
}

template <typename T>
void ProcessInitializer<T>::NotifyFailedStart() {
  if (RunsWithoutStateMgr()) return;
  IpcMessage notice;
  ProcessPayload payload(process_);
  if (notice.Allocate(StateMgrProcessMsg_FailedStart, ProcessPayload::kSize, payload.Bytes()) != 0) {
    log_(kLogError, "ProcessInitializer::NotifyFailedStart - Error allocating request");
    return;
  }
  (void)NotifyStateMgr(notice);
}

// Handles subscribe and full run here, after each receive, so that a subscribe request that arrives together
// with a shutdown is still served.
template <typename T>
bool ProcessInitializer<T>::WaitForStateMgr() {
  ipc_.RegisterHandler(StateMgrProcessMsg_Subscribe, IgnoreHandler, nullptr);
  ipc_.RegisterHandler(StateMgrProcessMsg_FullRun, IgnoreHandler, nullptr);
  for (bool ok = true; ok;) {
    const int rc = ipc_.Receive(-1, 0, LinxIpc::emptyString, nullptr);
    ok = rc == 0;
    if (rc == ESHUTDOWN) {
      log_(kLogShutdown, "WaitForStateMgr", " - shutdown requested.");
    } else if (rc != 0) {
      log_(kLogError, "ProcessInitializer::WaitForStateMgr - Receive error ", rc);
      return false;
    }
    const unsigned int type = ipc_.CurrentMessage().MsgType();
    if (type == StateMgrProcessMsg_Subscribe) {
      if (!ServeSubscribe(ok)) return false;
    } else if (type == StateMgrProcessMsg_FullRun) {
      log_(kLogInfo, "WaitForStateMgr", ": Got a StateMgrProcessMsg_FullRun");
      return ok;
    } else {
      log_(kLogInfo, "ProcessInitializer::WaitForStateMgr - Received a message - ", type);
    }
  }
  return false;
}

template <typename T>
bool ProcessInitializer<T>::ServeSubscribe(bool ok) {
  log_(kLogInfo, "WaitForStateMgr", ": Got a StateMgrProcessMsg_Subscribe");
  const unsigned char* payload = ipc_.CurrentMessage().DataPtr();
  if (payload == nullptr) {
    log_(kLogMalformed, "StateMgr::WaitForStateMgr NULL MESSAGE");
    return false;
  }
  const bool subscribed = managed_.SubscribeToServers(ipc_, payload[0] != 0);
  if (!subscribed) log_(kLogError, "ProcessInitializer::WaitForStateMgr - Failed Subscribe");
  if (!RespondToSubscribed(subscribed && ok)) {
    log_(kLogError, "ProcessInitializer::WaitForStateMgr - Failed RespondToSubscribed");
    return false;
  }
  return subscribed;
}

template <typename T>
bool ProcessInitializer<T>::RespondToSubscribed(bool success) {
  IpcMessage response;
  char payload = success ? 1 : 0;
  if (response.Allocate(StateMgrProcessMsg_Subscribed, 1, &payload) != 0) {
    log_(kLogError, "ProcessInitializer::RespondToSubscribed - Error allocating request");
    return false;
  }
  return NotifyStateMgr(response);
}

// Handles no death, restart or second quit notice after this one.
template <typename T>
void ProcessInitializer<T>::QuitHandler(LinxIpc* ipc, void* managed) {
  log_(kLogInfo, "Quit Requested");
  ipc->DeregisterProcessDied();
  ipc->DeregisterShutdown();
  ipc->DeregisterHandler(StateMgrProcessMsg_Restarted);
  static_cast<T*>(managed)->Shutdown(*ipc);
  RespondToShutdown(*ipc);
}

template <typename T>
void ProcessInitializer<T>::ProcessDiedHandler(LinxIpc* ipc, void* managed) {
  log_(kLogInfo, "Process Died");
  e_Process process{};
  if (ReadNoticeProcess(*ipc, process)) static_cast<T*>(managed)->ProcessDied(*ipc, process);
}

template <typename T>
void ProcessInitializer<T>::ProcessRestartHandler(LinxIpc* ipc, void* managed) {
  log_(kLogInfo, "Process Restarted");
  e_Process process{};
  if (ReadNoticeProcess(*ipc, process)) static_cast<T*>(managed)->ProcessRestarted(*ipc, process);
}
