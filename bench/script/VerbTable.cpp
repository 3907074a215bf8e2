#include "Processes.h"
#include "Sources.h"
#include "Verbs.h"

namespace bench {

namespace {

bool IsSourceOfServer(const Words& arguments, std::string& error) {
  if (ProcessName(FindSource(arguments[1])->server) == arguments[0]) return true;
  error = Quoted(arguments[1]) + " is not a source of " + arguments[0];
  return false;
}

// clang-format off
constexpr Verb kVerbs[] = {
    {"bookmark [TICK]", "Bench", "Sends a bookmark and waits for the notice that one was taken. Without a tick it is the present one.", Verb::kFullRun},
    {"camera CAMERA STATE", "VideoMgr", "Tells the state of a camera.", Verb::kFullRun},
    {"camera entries STATE STATE STATE STATE STATE STATE STATE STATE STATE", "VideoMgr",
     "Publishes the nine camera entries."},
    {"config department TEXT TEXT", "ConfigMgr", "Publishes name and division."},
    {"config officer TEXT TEXT", "ConfigMgr", "Publishes name and badge number."},
    {"config recording SECONDS SECONDS RESOLUTION FPS KBPS", "ConfigMgr",
     "Publishes the seconds recorded before and after an event, and the quality."},
    {"config system TEXT TEXT", "ConfigMgr", "Publishes device name and software version."},
    {"config vehicle TEXT TEXT", "ConfigMgr", "Publishes unit and licence plate."},
    {"covert off", "StateMgr", "Leaves covert mode."},
    {"covert on", "StateMgr", "Enters covert mode."},
    {"crash SWITCH", "AccelHal", "Publishes that a crash was detected, or is over."},
    {"died PROCESS", "StateMgr", "Tells all other processes that this one died."},
    {"direct record start [ID]", "StreamMgr", "Tells MetadataMgr of a recording event, or has one when MetadataMgr asks at its start. Without an ID the event gets one."},
    {"direct record stop", "StreamMgr", "Tells MetadataMgr of the end.", Verb::kFullRun},
    {"flood SERVER SOURCE SECONDS", kNamedServer,
     "Publishes one value as fast as MetadataMgr takes it, for this long.", Verb::kFullRun, IsSourceOfServer},
    {"gps fix LATITUDE LONGITUDE KMH COURSE METRES", "GpsHal", "Publishes a place."},
    {"gps none", "GpsHal", "Publishes that the fix is lost until the next gps fix."},
    {"gps rate RATE", "GpsHal", "Publishes the vehicle's track at this rate."},
    {"input INPUT SWITCH ...", "Fpga", "Publishes inputs that change at the same time."},
    {"kill FOLLOWER", "Bench", "Kills the process; the state manager tells the others of its death.", Verb::kFullRun},
    {"lasttick", "Bench", "Asks MetadataMgr for the last system tick of its store.", Verb::kFullRun},
    {"late SERVER MS", kNamedServer, "Answers subscriptions this much later from now on."},
    {"live LIVE SWITCH CAMERA ADDRESS PORT [HQ]", "ExternalMgr", "Publishes the state of a live stream."},
    {"loglevel [MASK]", "Bench", "Asks MetadataMgr for its log level; with a mask, sets it.", Verb::kFullRun},
    {"mic MIC PRESENCE ACTIVITY", "MicMgr", "Changes one microphone and publishes all."},
    {"mic message MIC PRESENCE ACTIVITY", "MicMgr", "Tells the state of one microphone.", Verb::kFullRun},
    {"mic rate RATE", "MicMgr", "Publishes the microphones at this rate."},
    {"missing FOLLOWER [MS]", "Bench", "Does not start the server, or starts it this long after the others.", Verb::kBefore},
    {"mute SERVER", "Bench", "Stops the process: it is there but answers nothing."},
    {"payload SERVER SOURCE BYTES", kNamedServer, "Publishes an item, or sends a message, with these bytes, and waits until MetadataMgr has taken it.",
     Verb::kAlways, IsSourceOfServer},
    {"ping", "Bench", "Pings MetadataMgr.", Verb::kFullRun},
    {"pings SECONDS", "Bench", "Pings MetadataMgr every 5 ms for this long.", Verb::kFullRun},
    {"quality STREAM RESOLUTION FPS KBPS", "VideoMgr", "Changes the quality of one stream and publishes all."},
    {"quit", "Bench", "Ends the drive: shuts all processes down.", Verb::kFullRun},
    {"radar SPEED SPEED SPEED SPEED", "RadarHal", "Publishes patrol, target, fastest and locked speed."},
    {"radar none", "RadarHal", "Publishes that there is no reading until the next radar."},
    {"radar rate RATE", "RadarHal", "Publishes traffic along the track at this rate."},
    {"record start", "StateMgr", "Begins a recording event."},
    {"record stop", "StateMgr", "Ends the recording event."},
    {"refuse SERVER ITEM", kNamedServer, "Refuses subscriptions to this item from now on."},
    {"restarted PROCESS", "StateMgr", "Tells all other processes that this one was restarted."},
    {"start FOLLOWER", "Bench", "Starts a process that is dead or missing.", Verb::kFullRun},
    {"stream STREAM STATE", "VideoMgr", "Tells the state of a video stream.", Verb::kFullRun},
    {"temp SENSOR CELSIUS", "TempHal", "Changes one temperature and publishes all."},
    {"temp rate RATE", "TempHal", "Publishes the temperatures at this rate."},
    {"wake SERVER", "Bench", "Lets a muted process go on."},
};
// clang-format on

}  // namespace

std::span<const Verb> Verbs() {
  return kVerbs;
}

}  // namespace bench
