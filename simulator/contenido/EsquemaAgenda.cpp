#include "contenido/Esquemas.h"

namespace simulado
{

const char *const esquemaAgenda = R"(
CREATE TABLE _SqliteDatabaseProperties (key TEXT, value TEXT, UNIQUE(key));
CREATE TABLE ABAccount (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, AccountIdentifier TEXT, ConstraintsPath TEXT, Description TEXT);
CREATE TABLE ABStore (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, Name TEXT, ExternalIdentifier TEXT, Type INTEGER,
    ConstraintsPath TEXT, ExternalModificationTag TEXT, ExternalSyncTag TEXT, StoreInternalIdentifier TEXT, AccountID INTEGER,
    Enabled INTEGER, SyncData BLOB, MeIdentifier INTEGER, Capabilities INTEGER, guid TEXT);
CREATE TABLE ABPerson (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, First TEXT, Last TEXT, Middle TEXT, FirstPhonetic TEXT,
    MiddlePhonetic TEXT, LastPhonetic TEXT, Organization TEXT, Department TEXT, Note TEXT, Kind INTEGER, Birthday TEXT,
    JobTitle TEXT, Nickname TEXT, Prefix TEXT, Suffix TEXT, FirstSort TEXT, LastSort TEXT, CreationDate INTEGER,
    ModificationDate INTEGER, CompositeNameFallback TEXT, ExternalIdentifier TEXT, ExternalModificationTag TEXT,
    ExternalUUID TEXT, StoreID INTEGER, DisplayName TEXT, ExternalRepresentation BLOB, FirstSortSection TEXT,
    LastSortSection TEXT, FirstSortLanguageIndex INTEGER DEFAULT 2147483647, LastSortLanguageIndex INTEGER DEFAULT 2147483647,
    PersonLink INTEGER DEFAULT -1, ImageURI TEXT, IsPreferredName INTEGER DEFAULT 1, guid TEXT, PhonemeData TEXT,
    AlternateBirthday TEXT, MapsData TEXT, FirstPronunciation TEXT, MiddlePronunciation TEXT, LastPronunciation TEXT,
    OrganizationPhonetic TEXT, OrganizationPronunciation TEXT, PreviousFamilyName TEXT, PreferredLikenessSource TEXT,
    PreferredPersonaIdentifier TEXT, PreferredChannel TEXT, DowntimeWhitelist TEXT, ImageType TEXT, ImageHash BLOB,
    MemojiMetadata BLOB, WallpaperMetadata BLOB);
CREATE TABLE ABMultiValue (UID INTEGER PRIMARY KEY, record_id INTEGER, property INTEGER, identifier INTEGER, label INTEGER,
    value TEXT, guid TEXT);
CREATE TABLE ABMultiValueLabel (value TEXT, UNIQUE(value));
CREATE TABLE ABMultiValueEntry (parent_id INTEGER, key INTEGER, value TEXT, UNIQUE(parent_id, key));
CREATE TABLE ABMultiValueEntryKey (value TEXT, UNIQUE(value));
CREATE TABLE ABGroup (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, Name TEXT, ExternalIdentifier TEXT, StoreID INTEGER,
    ExternalModificationTag TEXT, ExternalRepresentation BLOB, ExternalUUID TEXT, guid TEXT);
CREATE TABLE ABGroupMembers (UID INTEGER PRIMARY KEY, group_id INTEGER, member_type INTEGER, member_id INTEGER,
    UNIQUE(group_id, member_type, member_id));
CREATE TABLE ABPersonLink (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, PreferredNamePersonID INTEGER, PreferredImagePersonID INTEGER,
    guid TEXT);
CREATE TABLE ABPhoneLastFour (multivalue_id INTEGER PRIMARY KEY, value TEXT);
CREATE TABLE FirstSortSectionCount (StoreID INTEGER, LanguageIndex INTEGER, Section TEXT, Count INTEGER);
CREATE TABLE LastSortSectionCount (StoreID INTEGER, LanguageIndex INTEGER, Section TEXT, Count INTEGER);
CREATE INDEX ABMultiValueRecordIDIndex ON ABMultiValue(record_id);
INSERT INTO _SqliteDatabaseProperties VALUES ('_ClientVersion', '1009'), ('ABCollationRulesVersion', '3');
INSERT INTO ABMultiValueLabel (value) VALUES ('_$!<Mobile>!$_'), ('_$!<Home>!$_'), ('_$!<Work>!$_'), ('_$!<Anniversary>!$_'),
    ('_$!<HomePage>!$_'), ('El pueblo');
INSERT INTO ABMultiValueEntryKey (value) VALUES ('Country'), ('Street'), ('ZIP'), ('City'), ('CountryCode'), ('service'), ('username');
)";

const char *const esquemaFotosAgenda = R"(
CREATE TABLE _SqliteDatabaseProperties (key TEXT, value TEXT, UNIQUE(key));
CREATE TABLE ABFullSizeImage (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, record_id INTEGER, crop_x INTEGER, crop_y INTEGER,
    crop_width INTEGER, crop_height INTEGER, guid TEXT, data BLOB, UNIQUE(record_id));
CREATE TABLE ABThumbnailImage (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, record_id INTEGER, format INTEGER,
    derived_from_format INTEGER, data BLOB, UNIQUE(record_id, format));
INSERT INTO _SqliteDatabaseProperties VALUES ('_ClientVersion', '1009');
)";

} // namespace simulado
