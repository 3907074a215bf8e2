#pragma once

// Messages that this process serves; interface constants of the system. A response has the id of
// its request plus one.
enum MetadataMgrMsg : unsigned int {
  MetadataMgrMsg_Ping = 13488,
  MetadataMgrMsg_PingResponse = 13489,
  MetadataMgrMsg_MetadataToFile = 13490,
  MetadataMgrMsg_MetadataToFileResponse = 13491,
  MetadataMgrMsg_GetLastSystemTick = 13498,
  MetadataMgrMsg_GetLastSystemTickResponse = 13499,
  MetadataMgrMsg_VideoStreamState = 13500,
  MetadataMgrMsg_CameraState = 13501,
  MetadataMgrMsg_MicState = 13502,
  MetadataMgrMsg_RecordStartStop = 13503,
  MetadataMgrMsg_Bookmark = 13509,
};
