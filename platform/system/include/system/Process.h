#pragma once

// The processes of the system. The numbers are interface constants: the state manager's notices carry them.
// Numbers that are not listed belong to processes that MetadataMgr does not use.
enum e_Process : unsigned int {
  e_Process_StateMgr = 2,
  e_Process_ConfigMgr = 3,
  e_Process_Fpga = 4,
  e_Process_RadarHal = 7,
  e_Process_MicMgr = 11,
  e_Process_GpsHal = 12,
  e_Process_AccelHal = 13,
  e_Process_TempHal = 14,
  e_Process_MetadataMgr = 19,
  e_Process_StreamMgr = 20,
  e_Process_VideoMgr = 21,
  e_Process_ExternalMgr = 29,
};

// The threads of a process, for the watchdog. A process with one thread uses 0.
enum e_ThreadIds : unsigned int { e_ThreadIds_Main = 0 };
