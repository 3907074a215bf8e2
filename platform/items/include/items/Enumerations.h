#pragma once

// Numbers that items and the store share. The values are interface constants of the system. Values outside
// the stated ranges pass unchanged.

enum e_MicrophonePosition : unsigned int {};  // 0 to 3 are the microphones of the vehicle
enum e_TempSensors : unsigned int {};         // 0 to 3
enum e_CameraPort : unsigned int {};          // 0 to 3
enum e_VideoStream : unsigned int {};         // 0 to 3; live streams 0 to 5

// State of one camera; 1 and 2 mean active.
enum e_CameraState : unsigned int {};

// State of one video stream.
enum e_StreamState : unsigned int {};
