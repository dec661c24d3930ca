-- The state of a set that a program wrote which was never packaged, of schema 2: before it kept what lists say of services.
PRAGMA application_id = 1701672753;
PRAGMA user_version = 2;
BEGIN TRANSACTION;
CREATE TABLE audio_track(
  service INTEGER NOT NULL REFERENCES service ON DELETE CASCADE,
  position INTEGER NOT NULL,
  pid INTEGER NOT NULL,
  lang INTEGER NOT NULL,
  decode_type INTEGER NOT NULL,
  audio_mode INTEGER NOT NULL,
  audio_type INTEGER NOT NULL,
  readable INTEGER NOT NULL,
  PRIMARY KEY(service, position)
) STRICT, WITHOUT ROWID;
INSERT INTO "audio_track" VALUES(1,0,102,6647399,1,0,0,1);
INSERT INTO "audio_track" VALUES(1,1,103,6579573,1,0,0,1);
INSERT INTO "audio_track" VALUES(2,0,202,6647399,1,0,0,1);
INSERT INTO "audio_track" VALUES(3,0,302,6647399,1,0,0,1);
CREATE TABLE favourite(
  service INTEGER NOT NULL REFERENCES service ON DELETE CASCADE,
  number INTEGER NOT NULL,
  member INTEGER NOT NULL,
  PRIMARY KEY(service, number)
) STRICT, WITHOUT ROWID;
INSERT INTO "favourite" VALUES(1,1,1);
INSERT INTO "favourite" VALUES(1,3,0);
CREATE TABLE raw_field(
  service INTEGER NOT NULL REFERENCES service ON DELETE CASCADE,
  field INTEGER NOT NULL,
  value ANY NOT NULL,
  PRIMARY KEY(service, field)
) STRICT, WITHOUT ROWID;
CREATE TABLE service(
  key INTEGER PRIMARY KEY AUTOINCREMENT,
  service_id INTEGER,
  channel_name BLOB,
  original_network_id INTEGER,
  program_number INTEGER,
  transport_stream_id INTEGER,
  channel_type INTEGER,
  ptc INTEGER,
  modulation INTEGER,
  source_id INTEGER,
  frequency INTEGER,
  major INTEGER,
  minor INTEGER,
  lock INTEGER,
  symbol_rate INTEGER,
  antenna_mode INTEGER,
  hidden INTEGER,
  service_mode INTEGER,
  group_name TEXT NOT NULL,
  service_field_110 BLOB,
  place INTEGER AS (((ifnull(major, 65536) << 17 | ifnull(minor, 65536)) << 29) + key) VIRTUAL,
  hidden_or_0 INTEGER AS (ifnull(hidden, 0)) VIRTUAL
) STRICT;
INSERT INTO "service" VALUES(1,-8070414161659493399,X'004C0061006E007400650072006E0020004F006E0065',8468,1001,12289,9,29,3,8468,538000,1,0,0,NULL,0,0,0,'',NULL);
INSERT INTO "service" VALUES(2,-8070414161659493398,X'004C0061006E007400650072006E002000540077006F',8468,1002,12289,9,29,3,8468,538000,2,0,0,NULL,0,0,0,'',NULL);
INSERT INTO "service" VALUES(3,-8070414161659493397,X'004C0061006E007400650072006E00200052006100640069006F',8468,1003,12289,3,29,3,8468,538000,3,0,0,NULL,0,0,0,'',NULL);
CREATE TABLE set_state(key TEXT PRIMARY KEY, value TEXT NOT NULL) STRICT, WITHOUT ROWID;
INSERT INTO "set_state" VALUES('country','7');
INSERT INTO "set_state" VALUES('input.0.height','1080');
INSERT INTO "set_state" VALUES('input.0.plugged','1');
INSERT INTO "set_state" VALUES('input.0.rate','25');
INSERT INTO "set_state" VALUES('input.0.width','1920');
INSERT INTO "set_state" VALUES('input.1.height','576');
INSERT INTO "set_state" VALUES('input.1.plugged','0');
INSERT INTO "set_state" VALUES('input.1.rate','25');
INSERT INTO "set_state" VALUES('input.1.width','720');
INSERT INTO "set_state" VALUES('input.10.height','1080');
INSERT INTO "set_state" VALUES('input.10.plugged','1');
INSERT INTO "set_state" VALUES('input.10.rate','60');
INSERT INTO "set_state" VALUES('input.10.width','1920');
INSERT INTO "set_state" VALUES('input.13.height','1080');
INSERT INTO "set_state" VALUES('input.13.plugged','1');
INSERT INTO "set_state" VALUES('input.13.rate','60');
INSERT INTO "set_state" VALUES('input.13.width','1920');
INSERT INTO "set_state" VALUES('input.14.height','2160');
INSERT INTO "set_state" VALUES('input.14.plugged','1');
INSERT INTO "set_state" VALUES('input.14.rate','50');
INSERT INTO "set_state" VALUES('input.14.width','3840');
INSERT INTO "set_state" VALUES('input.15.height','1080');
INSERT INTO "set_state" VALUES('input.15.plugged','0');
INSERT INTO "set_state" VALUES('input.15.rate','25');
INSERT INTO "set_state" VALUES('input.15.width','1920');
INSERT INTO "set_state" VALUES('input.16.height','1080');
INSERT INTO "set_state" VALUES('input.16.plugged','0');
INSERT INTO "set_state" VALUES('input.16.rate','25');
INSERT INTO "set_state" VALUES('input.16.width','1920');
INSERT INTO "set_state" VALUES('input.17.height','576');
INSERT INTO "set_state" VALUES('input.17.plugged','1');
INSERT INTO "set_state" VALUES('input.17.rate','25');
INSERT INTO "set_state" VALUES('input.17.width','720');
INSERT INTO "set_state" VALUES('input.31.height','720');
INSERT INTO "set_state" VALUES('input.31.plugged','1');
INSERT INTO "set_state" VALUES('input.31.rate','30');
INSERT INTO "set_state" VALUES('input.31.width','1280');
INSERT INTO "set_state" VALUES('input.7.height','720');
INSERT INTO "set_state" VALUES('input.7.plugged','0');
INSERT INTO "set_state" VALUES('input.7.rate','50');
INSERT INTO "set_state" VALUES('input.7.width','1280');
INSERT INTO "set_state" VALUES('isp.audio','7011:eng:aac:2:0,7012:deu:aac:2:0,7013:eng:eac3:4:0,7014:eng:aac:2:3');
INSERT INTO "set_state" VALUES('isp.audio_in_use','0');
INSERT INTO "set_state" VALUES('isp.height','1080');
INSERT INTO "set_state" VALUES('isp.present','1');
INSERT INTO "set_state" VALUES('isp.shown','0');
INSERT INTO "set_state" VALUES('isp.subtitle_in_use','-1');
INSERT INTO "set_state" VALUES('isp.subtitles','7021:eng:dvb,7022:deu:dvb,7023:eng:teletext,7023:eng:teletext-subtitle,7023:deu:teletext-subtitle');
INSERT INTO "set_state" VALUES('isp.width','1920');
INSERT INTO "set_state" VALUES('main.antenna','0');
INSERT INTO "set_state" VALUES('main.audio','0');
INSERT INTO "set_state" VALUES('main.previous_service','0');
INSERT INTO "set_state" VALUES('main.previous_source','13');
INSERT INTO "set_state" VALUES('main.service','1');
INSERT INTO "set_state" VALUES('main.service_mode','0');
INSERT INTO "set_state" VALUES('main.source','17');
INSERT INTO "set_state" VALUES('main.source_state','2');
INSERT INTO "set_state" VALUES('main.subtitle','-1');
INSERT INTO "set_state" VALUES('pip.antenna','0');
INSERT INTO "set_state" VALUES('pip.audio','0');
INSERT INTO "set_state" VALUES('pip.previous_service','0');
INSERT INTO "set_state" VALUES('pip.previous_source','-1');
INSERT INTO "set_state" VALUES('pip.service','0');
INSERT INTO "set_state" VALUES('pip.service_mode','0');
INSERT INTO "set_state" VALUES('pip.source','-1');
INSERT INTO "set_state" VALUES('pip.source_state','-1');
INSERT INTO "set_state" VALUES('pip.subtitle','-1');
INSERT INTO "set_state" VALUES('region','1');
INSERT INTO "set_state" VALUES('start.service','1152957875195282409');
INSERT INTO "set_state" VALUES('start.source','0');
INSERT INTO "set_state" VALUES('tuner.fade','0');
CREATE TABLE setting(key TEXT PRIMARY KEY, value ANY NOT NULL) STRICT, WITHOUT ROWID;
INSERT INTO "setting" VALUES('db/boot/last_service','tv-service');
INSERT INTO "setting" VALUES('db/lab/count',42);
INSERT INTO "setting" VALUES('db/lab/note','kept by the first');
ANALYZE "sqlite_master";
INSERT INTO "sqlite_stat1" VALUES('service','service_by_id','10000 1');
INSERT INTO "sqlite_stat1" VALUES('service','service_by_number','10000 4 2');
INSERT INTO "sqlite_stat1" VALUES('service','service_by_ptc','10000 20');
INSERT INTO "sqlite_stat1" VALUES('service','service_by_place','10000 1');
INSERT INTO "sqlite_stat1" VALUES('service','service_by_antenna','10000 3500 3000 1');
INSERT INTO "sqlite_stat1" VALUES('service','service_by_mode','10000 3500 1000 900 1');
CREATE TABLE subtitle_track(
  service INTEGER NOT NULL REFERENCES service ON DELETE CASCADE,
  position INTEGER NOT NULL,
  pid INTEGER NOT NULL,
  lang INTEGER NOT NULL,
  type INTEGER NOT NULL,
  readable INTEGER NOT NULL,
  PRIMARY KEY(service, position)
) STRICT, WITHOUT ROWID;
CREATE INDEX service_by_id ON service(service_id);
CREATE INDEX service_by_number ON service(major, minor);
CREATE INDEX service_by_ptc ON service(ptc);
CREATE INDEX service_by_place ON service(place);
CREATE INDEX service_by_antenna ON service(antenna_mode, hidden_or_0, place);
CREATE INDEX service_by_mode ON service(antenna_mode, service_mode, hidden_or_0, place);
CREATE INDEX raw_field_by_value ON raw_field(field, value);
DELETE FROM "sqlite_sequence";
INSERT INTO "sqlite_sequence" VALUES('service',3);
COMMIT;
