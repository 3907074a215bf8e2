#pragma once

// The numbers of the system's messages, in ascending order; Servers.h has those of the servers' notices. They
// are interface constants. The comments name the payloads; their fields are big-endian, docs/wire.md has them
// byte by byte.

// The subscribe protocol, between every server and its subscribers.
enum e_SubscribeMsg : unsigned int {
  SubscribeMsg_Subscribe = 1856,    // 32-bit item id, 32-bit notification id (0: the value only)
  SubscribeMsg_Answer = 1857,       // 32-bit item id, 32-bit notification id, 32-bit result, item
  SubscribeMsg_Unsubscribe = 1858,  // like Subscribe; not answered
};

// Log level of a process; every process serves these.
enum e_LogLevelMsg : unsigned int {
  LogLevelMsg_Set = 1872,       // 32-bit mask
  LogLevelMsg_Get = 1873,       // 32-bit, content ignored
  LogLevelMsg_Response = 1874,  // 32-bit current mask
};

// Between the state manager and the processes that it starts.
enum e_StateMgrProcessMsg : unsigned int {
  StateMgrProcessMsg_Started = 13232,           // 32-bit e_Process of the sender
  StateMgrProcessMsg_Subscribe = 13233,         // byte 0: flag for SubscribeToServers
  StateMgrProcessMsg_Subscribed = 13234,        // byte 0: 1 if the subscriptions succeeded, else 0
  StateMgrProcessMsg_FullRun = 13235,           // nothing
  StateMgrProcessMsg_Restarted = 13236,         // 32-bit e_Process of the restarted process
  StateMgrProcessMsg_Died = 13237,              // 32-bit e_Process of the dead process
  StateMgrProcessMsg_Quit = 13238,              // nothing
  StateMgrProcessMsg_ShutdownResponse = 13239,  // nothing
  StateMgrProcessMsg_FailedStart = 13244,       // 32-bit e_Process of the sender
};

// Served by MetadataMgr. A response has the id of its request plus one.
enum e_MetadataMgrMsg : unsigned int {
  MetadataMgrMsg_Ping = 13488,                       // nothing
  MetadataMgrMsg_PingResponse = 13489,               // nothing
  MetadataMgrMsg_MetadataToFile = 13490,             // 1024 bytes of file name, 32-bit first and last tick
  MetadataMgrMsg_MetadataToFileResponse = 13491,     // byte 0: 1 if the copy was made, else 0
  MetadataMgrMsg_GetLastSystemTick = 13498,          // nothing
  MetadataMgrMsg_GetLastSystemTickResponse = 13499,  // 32-bit tick, byte 4: 1 if it is valid; 3 zero bytes
  MetadataMgrMsg_VideoStreamState = 13500,           // 32-bit tick, stream, state
  MetadataMgrMsg_CameraState = 13501,                // 32-bit tick, camera, state
  MetadataMgrMsg_MicState = 13502,                   // 32-bit tick, microphone; bytes present, active
  MetadataMgrMsg_RecordStartStop = 13503,            // 32-bit tick, byte 4: 0 stop, else start
  MetadataMgrMsg_Bookmark = 13509,                   // 32-bit tick
};

// Served by the stream manager.
enum e_StreamMgrMsg : unsigned int {
  StreamMgrMsg_GetRecording = 13616,          // nothing
  StreamMgrMsg_GetRecordingResponse = 13617,  // StringItem: recording event id; empty when not recording
};
