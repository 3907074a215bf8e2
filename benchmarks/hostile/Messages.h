#pragma once

#include <string>

// Messages; interface constants of the system.
constexpr unsigned int kSubscribeItem = 1856, kSubscribeAnswer = 1857, kGetLogLevel = 1873;
constexpr unsigned int kStarted = 13232, kSubscribeToServers = 13233, kSubscribed = 13234, kFullRun = 13235;
constexpr unsigned int kShutdownDone = 13239;
constexpr unsigned int kPing = 13488, kPong = 13489, kCopy = 13490, kGetTick = 13498;
constexpr unsigned int kStreamState = 13500, kCameraState = 13501, kRecordStartStop = 13503,
                       kBookmark = 13509;

const std::string kProcess = "MetadataMgr";
