-- A recording of schema 1, as released; every version reads it. Made with .dump of the sqlite3 shell.
PRAGMA foreign_keys=OFF;
BEGIN TRANSACTION;
CREATE TABLE state(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, signal INTEGER NOT NULL, active INTEGER NOT NULL) STRICT;
INSERT INTO state VALUES(5,10000,10000,1,64,1);
INSERT INTO state VALUES(6,10000,10000,0,56,1);
INSERT INTO state VALUES(17,13500,13500,1,66,1);
CREATE TABLE string(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, tag INTEGER NOT NULL, text TEXT NOT NULL) STRICT;
CREATE TABLE bookmark(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL) STRICT;
INSERT INTO bookmark VALUES(14,13500,13500,1);
CREATE TABLE gps_state(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, valid INTEGER NOT NULL) STRICT;
CREATE TABLE gps(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, latitude_e4min INTEGER NOT NULL, longitude_e4min INTEGER NOT NULL, altitude_dm INTEGER NOT NULL, speed_deci_kmh INTEGER NOT NULL, speed_deci_knots INTEGER NOT NULL, course_deci_deg INTEGER NOT NULL, quality INTEGER NOT NULL, fix_dimensions INTEGER NOT NULL, satellites_used INTEGER NOT NULL, satellites_in_view INTEGER NOT NULL, signal_db INTEGER NOT NULL, utc_date INTEGER NOT NULL, utc_time_ms INTEGER NOT NULL, valid INTEGER NOT NULL) STRICT;
INSERT INTO gps VALUES(8,10500,10500,1,31510120,8026000,0,905,0,0,1,0,0,0,0,20240501,43200500,1);
INSERT INTO gps VALUES(10,11500,11500,1,31510220,8026000,0,905,0,0,1,0,0,0,0,20240501,43201500,1);
INSERT INTO gps VALUES(12,12500,12500,1,31510320,8026000,0,905,0,0,1,0,0,0,0,20240501,43202500,1);
CREATE TABLE speed(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, source INTEGER NOT NULL, speed INTEGER NOT NULL, tag INTEGER NOT NULL) STRICT;
INSERT INTO speed VALUES(9,10500,10500,1,1,90,0);
INSERT INTO speed VALUES(11,11500,11500,1,1,90,0);
INSERT INTO speed VALUES(13,12500,12500,1,1,90,0);
CREATE TABLE speed_valid(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, source INTEGER NOT NULL, valid INTEGER NOT NULL) STRICT;
CREATE TABLE radar_state(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, radar INTEGER NOT NULL, valid INTEGER NOT NULL) STRICT;
CREATE TABLE radar(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, radar INTEGER NOT NULL, speed1 INTEGER NOT NULL, speed2 INTEGER NOT NULL, speed3 INTEGER NOT NULL, direction INTEGER NOT NULL, tag INTEGER NOT NULL) STRICT;
INSERT INTO radar VALUES(15,13500,13500,1,1,50,60,0,0,0);
CREATE TABLE mic_present(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, mic INTEGER NOT NULL, present INTEGER NOT NULL) STRICT;
CREATE TABLE mic_active(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, mic INTEGER NOT NULL, active INTEGER NOT NULL) STRICT;
CREATE TABLE temperature(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, sensor INTEGER NOT NULL, temperature INTEGER NOT NULL) STRICT;
INSERT INTO temperature VALUES(16,13500,13500,1,0,-7);
CREATE TABLE camera(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, camera INTEGER NOT NULL, state INTEGER NOT NULL) STRICT;
CREATE TABLE video_stream(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, stream INTEGER NOT NULL, state INTEGER NOT NULL) STRICT;
CREATE TABLE live_stream(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, stream INTEGER NOT NULL, camera INTEGER NOT NULL, high_quality INTEGER NOT NULL, enabled INTEGER NOT NULL, address INTEGER NOT NULL, port INTEGER NOT NULL) STRICT;
CREATE TABLE stream_quality(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, stream INTEGER NOT NULL, width INTEGER NOT NULL, height INTEGER NOT NULL, frames_per_second INTEGER NOT NULL, bit_rate_kbps INTEGER NOT NULL) STRICT;
CREATE TABLE vehicle(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, unit_id TEXT NOT NULL, license_plate TEXT NOT NULL) STRICT;
CREATE TABLE system_info(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, device_name TEXT NOT NULL, software_version TEXT NOT NULL) STRICT;
CREATE TABLE department(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, name TEXT NOT NULL, division TEXT NOT NULL) STRICT;
CREATE TABLE officer(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, name TEXT NOT NULL, badge_number TEXT NOT NULL) STRICT;
CREATE TABLE recording_settings(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, pre_event_s INTEGER NOT NULL, post_event_s INTEGER NOT NULL, width INTEGER NOT NULL, height INTEGER NOT NULL, frames_per_second INTEGER NOT NULL, bit_rate_kbps INTEGER NOT NULL) STRICT;
CREATE TABLE mac(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, address TEXT NOT NULL) STRICT;
INSERT INTO mac VALUES(3,10000,NULL,0,'02:00:00:00:00:01');
CREATE TABLE serial(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, serial TEXT NOT NULL) STRICT;
INSERT INTO serial VALUES(4,10000,NULL,0,'4711');
CREATE TABLE version(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, component INTEGER NOT NULL, version TEXT NOT NULL) STRICT;
CREATE TABLE configuration(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, name TEXT NOT NULL, value TEXT NOT NULL) STRICT;
CREATE TABLE previous_run(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, ended TEXT NOT NULL, file TEXT NOT NULL, last_seq INTEGER NOT NULL, last_tick INTEGER NOT NULL, last_utc_ms INTEGER NOT NULL) STRICT;
INSERT INTO previous_run VALUES(2,10000,NULL,0,'none','',0,0,0);
CREATE TABLE run_end(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL) STRICT;
INSERT INTO run_end VALUES(18,14000,NULL,1);
CREATE TABLE clock(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, utc_ms INTEGER NOT NULL, clock_source TEXT NOT NULL, system_utc_ms INTEGER NOT NULL) STRICT;
INSERT INTO clock VALUES(1,10000,NULL,1,1714564800000,'system',1714564800000);
INSERT INTO clock VALUES(7,10500,NULL,1,1714564800500,'gps',1714564800500);
CREATE TABLE loss(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, lost_table TEXT NOT NULL, from_tick INTEGER NOT NULL, to_tick INTEGER NOT NULL, count INTEGER NOT NULL) STRICT;
CREATE TABLE log_pinned(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, pinned INTEGER NOT NULL, log_bytes INTEGER NOT NULL) STRICT;
CREATE TABLE copy(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER NOT NULL, store TEXT NOT NULL, first_file TEXT NOT NULL, last_file TEXT NOT NULL, missing_files INTEGER NOT NULL, first_asked INTEGER NOT NULL, last_asked INTEGER NOT NULL, from_tick INTEGER NOT NULL, to_tick INTEGER NOT NULL) STRICT;
CREATE TABLE tag_name(tag INTEGER PRIMARY KEY, name TEXT NOT NULL, active_text TEXT NOT NULL, inactive_text TEXT NOT NULL) STRICT;
INSERT INTO tag_name VALUES(32,'filler','','');
INSERT INTO tag_name VALUES(52,'lights','on','off');
INSERT INTO tag_name VALUES(54,'siren','on','off');
INSERT INTO tag_name VALUES(56,'brakes','on','off');
INSERT INTO tag_name VALUES(58,'covert','entered','left');
INSERT INTO tag_name VALUES(60,'aux','on','off');
INSERT INTO tag_name VALUES(62,'doorOpen','open','closed');
INSERT INTO tag_name VALUES(64,'system','started','stopped');
INSERT INTO tag_name VALUES(66,'crash','detected','cleared');
INSERT INTO tag_name VALUES(68,'ignition','on','off');
INSERT INTO tag_name VALUES(70,'recording','started','stopped');
CREATE TABLE progress(last_seq INTEGER NOT NULL, last_tick INTEGER NOT NULL) STRICT;
INSERT INTO progress VALUES(18,14000);
CREATE VIEW record AS
SELECT seq, tick, sender_tick, event, coalesce((SELECT name FROM tag_name WHERE tag_name.tag=state.signal),'signal '||signal) AS source, coalesce((SELECT iif(active,active_text,inactive_text) FROM tag_name WHERE tag=signal),iif(active,'on','off')) AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM state
UNION ALL SELECT seq, tick, sender_tick, event, coalesce((SELECT name FROM tag_name WHERE tag_name.tag=string.tag),'text '||tag) AS source, text AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM string
UNION ALL SELECT seq, tick, sender_tick, event, 'bookmark' AS source, 'set' AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM bookmark
UNION ALL SELECT seq, tick, sender_tick, event, 'gps' AS source, iif(valid,'fix','no fix') AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM gps_state
UNION ALL SELECT seq, tick, sender_tick, event, 'gps' AS source, printf('%.6f %.6f',latitude_e4min/600000.0,longitude_e4min/600000.0)||iif(altitude_dm=134217727,'',printf(' %.1f m',altitude_dm/10.0))||printf(', %.1f km/h, course %.1f',speed_deci_kmh/10.0,course_deci_deg/10.0)||CASE quality WHEN 0 THEN ', no fix' WHEN 1 THEN ', fix' WHEN 2 THEN ', differential' WHEN 8 THEN ', simulated' ELSE ', quality '||quality END||', '||satellites_used||' satellites' AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM gps
UNION ALL SELECT seq, tick, sender_tick, event, CASE source WHEN 1 THEN 'speed gps' WHEN 2 THEN 'speed radar' ELSE 'speed '||source END AS source, speed AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM speed
UNION ALL SELECT seq, tick, sender_tick, event, CASE source WHEN 1 THEN 'speed gps' WHEN 2 THEN 'speed radar' ELSE 'speed '||source END AS source, iif(valid,'valid','not valid') AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM speed_valid
UNION ALL SELECT seq, tick, sender_tick, event, 'radar '||radar AS source, iif(valid,'reading','no reading') AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM radar_state
UNION ALL SELECT seq, tick, sender_tick, event, 'radar '||radar AS source, speed1||' '||speed2||' '||speed3||iif(direction,' direction '||direction,'') AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM radar
UNION ALL SELECT seq, tick, sender_tick, event, 'microphone '||mic AS source, iif(present,'present','absent') AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM mic_present
UNION ALL SELECT seq, tick, sender_tick, event, 'microphone '||mic AS source, iif(active,'active','not active') AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM mic_active
UNION ALL SELECT seq, tick, sender_tick, event, 'temperature '||sensor AS source, temperature AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM temperature
UNION ALL SELECT seq, tick, sender_tick, event, 'camera '||camera AS source, 'state '||state AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM camera
UNION ALL SELECT seq, tick, sender_tick, event, 'stream '||stream AS source, 'state '||state AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM video_stream
UNION ALL SELECT seq, tick, sender_tick, event, 'live stream '||stream AS source, iif(enabled,'on','off')||' camera '||camera||iif(high_quality,' high quality','')||iif(address=4294967295,'',' to '||(address>>24)||'.'||((address>>16)&255)||'.'||((address>>8)&255)||'.'||(address&255)||':'||port) AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM live_stream
UNION ALL SELECT seq, tick, sender_tick, event, 'stream '||stream AS source, width||'x'||height||' '||frames_per_second||' frames/s '||bit_rate_kbps||' kbit/s' AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM stream_quality
UNION ALL SELECT seq, tick, sender_tick, event, 'vehicle' AS source, 'unit '||unit_id||', plate '||license_plate AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM vehicle
UNION ALL SELECT seq, tick, sender_tick, event, 'system info' AS source, device_name||', software '||software_version AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM system_info
UNION ALL SELECT seq, tick, sender_tick, event, 'department' AS source, name||', '||division AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM department
UNION ALL SELECT seq, tick, sender_tick, event, 'officer' AS source, name||', badge '||badge_number AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM officer
UNION ALL SELECT seq, tick, sender_tick, event, 'recording settings' AS source, pre_event_s||' s before, '||post_event_s||' s after, '||width||'x'||height||' '||frames_per_second||' frames/s '||bit_rate_kbps||' kbit/s' AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM recording_settings
UNION ALL SELECT seq, tick, sender_tick, event, 'device' AS source, 'hardware address '||address AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM mac
UNION ALL SELECT seq, tick, sender_tick, event, 'device' AS source, 'serial number '||serial AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM serial
UNION ALL SELECT seq, tick, sender_tick, event, 'device' AS source, 'version of component '||component||': '||version AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM version
UNION ALL SELECT seq, tick, sender_tick, event, 'store' AS source, name||' = '||value AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM configuration
UNION ALL SELECT seq, tick, sender_tick, event, 'previous run' AS source, ended||iif(file='','',' '||file||' at tick '||last_tick) AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM previous_run
UNION ALL SELECT seq, tick, sender_tick, event, 'run' AS source, 'clean end' AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM run_end
UNION ALL SELECT seq, tick, sender_tick, event, 'clock' AS source, 'set by '||clock_source||iif(abs(system_utc_ms-utc_ms)<=1000,'',printf(', the wall clock is off by %+.1f s',(system_utc_ms-utc_ms)/1000.0)) AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM clock
UNION ALL SELECT seq, tick, sender_tick, event, 'store' AS source, 'lost '||count||' records of '||lost_table||' from tick '||from_tick||' to '||to_tick AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM loss
UNION ALL SELECT seq, tick, sender_tick, event, 'store' AS source, iif(pinned,'a reader makes the log grow','the log is short again')||': '||log_bytes||' bytes' AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM log_pinned
UNION ALL SELECT seq, tick, sender_tick, event, 'copy' AS source, 'of '||store||', '||first_file||' to '||last_file||', ticks '||from_tick||' to '||to_tick||iif(missing_files=0,'',', '||missing_files||' files are missing') AS text, ((sender_tick-tick+2147483648)&4294967295)-2147483648 AS shift FROM copy;
CREATE VIEW timeline AS
WITH shifted AS (
  SELECT seq, tick, sender_tick, event, source, text,
         iif(event<>2 AND sender_tick NOT IN (0,4294967295) AND abs(shift)<=60000, shift, NULL) AS shift
  FROM record),
timed AS (
  SELECT *, tick + coalesce(shift,0) +
      (SELECT utc_ms-clock.tick FROM clock
       WHERE clock.seq<=max(shifted.seq, (SELECT coalesce(
           (SELECT min(seq) FROM clock WHERE clock_source='gps'),
           (SELECT min(seq) FROM clock WHERE utc_ms>=1704067200000),
           (SELECT min(seq) FROM clock))))
       ORDER BY clock.seq DESC LIMIT 1) AS utc_ms
  FROM shifted)
SELECT seq,
       strftime('%Y-%m-%dT%H:%M:%S', utc_ms/1000, 'unixepoch') || printf('.%03dZ', utc_ms%1000) AS utc,
       iif(shift IS NULL,'arrival','sender') AS utc_from,
       tick, sender_tick, source,
       CASE event WHEN 0 THEN 'initial' WHEN 1 THEN 'event' ELSE 'restated' END AS event,
       text
FROM timed ORDER BY seq;
COMMIT;
PRAGMA application_id=1296909378;
PRAGMA user_version=1;
