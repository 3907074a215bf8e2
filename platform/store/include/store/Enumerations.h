#pragma once

// Numbers that the store's operations take. They are interface constants of the system. Values that are not
// listed are recorded unchanged.

// Subject of a state or string record. States come in pairs: the even tag means that the signal became
// active, the next odd tag that it became inactive.
enum e_Tag : unsigned int {
  e_Tag_None = 0,
  e_Tag_Filler = 32,  // a text that only fills the recording
  e_Tag_LightsOn = 52,
  e_Tag_LightsOff = 53,
  e_Tag_SirenOn = 54,
  e_Tag_SirenOff = 55,
  e_Tag_BrakesOn = 56,
  e_Tag_BrakesOff = 57,
  e_Tag_CovertEntered = 58,
  e_Tag_CovertLeft = 59,
  e_Tag_AuxOn = 60,
  e_Tag_AuxOff = 61,
  e_Tag_DoorOpen = 62,
  e_Tag_DoorClosed = 63,
  e_Tag_Started = 64,  // the metadata recorder has started; reported once
  e_Tag_CrashDetected = 66,
  e_Tag_CrashCleared = 67,
  e_Tag_IgnitionOn = 68,
  e_Tag_IgnitionOff = 69,
  e_Tag_RecordingStarted = 70,
  e_Tag_RecordingStopped = 71,
};

// A part of the recorder with its own software version.
enum e_COMPONENT : unsigned int { e_COMPONENT_Build = 2 };

// Which way a radar looks or its target moves; 0: unknown.
enum e_RADAR_DIRECTION : unsigned int { e_RADAR_DIRECTION_Unknown = 0 };
