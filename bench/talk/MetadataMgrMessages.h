#pragma once

#include <cstdint>

#include "ipc/IpcMessage.h"

// Messages that other processes send to MetadataMgr, and its answers. Fields are big-endian.
enum MetadataMgrMsg : unsigned int {
  MetadataMgrMsg_Ping = 13488,                       // nothing
  MetadataMgrMsg_PingResponse = 13489,               // nothing
  MetadataMgrMsg_GetLastSystemTick = 13498,          // nothing
  MetadataMgrMsg_GetLastSystemTickResponse = 13499,  // 32-bit tick, byte 4: 1 if it is valid; 3 bytes more
  MetadataMgrMsg_VideoStreamState = 13500,           // 32-bit tick, stream, state
  MetadataMgrMsg_CameraState = 13501,                // 32-bit tick, camera, state
  MetadataMgrMsg_MicState = 13502,                   // 32-bit tick, microphone; bytes present, active
  MetadataMgrMsg_RecordStartStop = 13503,            // 32-bit tick, byte 4: 1 start, 0 stop
  MetadataMgrMsg_Bookmark = 13509,                   // 32-bit tick
};

// The item that it publishes: true in a notice says that a bookmark was taken.
constexpr unsigned int kBookmarkItem = 0;

// Under which the bench gets the notices of that item.
constexpr unsigned int kBookmarkNotice = 30736;

// Makes a message that carries the current system tick, which is the result, and, where `flag` is
// not negative, a byte.
std::uint32_t AllocateTick(IpcMessage& message, unsigned int type, int flag = -1);
