#include "contenido/Esquemas.h"

namespace simulado
{

const char *const esquemaCalendario = R"(
CREATE TABLE _SqliteDatabaseProperties (key TEXT, value TEXT, UNIQUE(key));
CREATE TABLE Store (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT, default_alarm_offset INTEGER, type INTEGER,
    constraint_path TEXT, disabled INTEGER, external_id TEXT, persistent_id TEXT UNIQUE, flags INTEGER, creator_bundle_id TEXT,
    creator_code_signing_identity TEXT, only_creator_can_modify INTEGER, external_mod_tag TEXT, preferred_event_private_value INTEGER,
    strictest_event_private_value INTEGER, owner_name TEXT, delegated_account_owner_store_id TEXT);
CREATE TABLE Calendar (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, store_id INTEGER, title TEXT, flags INTEGER, color TEXT,
    symbolic_color_name TEXT, color_is_display INTEGER, type TEXT, supported_entity_types INTEGER, external_id TEXT,
    external_mod_tag TEXT, external_id_tag TEXT, external_rep BLOB, display_order INTEGER, UUID TEXT, shared_owner_name TEXT,
    shared_owner_address TEXT, sharing_status INTEGER, sharing_invitation_response INTEGER, published_URL TEXT,
    is_published INTEGER, invitation_status INTEGER, sync_token TEXT, self_identity_id INTEGER, self_identity_email TEXT,
    owner_identity_id INTEGER, notes TEXT, bulk_requests BLOB, subcal_account_id TEXT, push_key TEXT, error_id INTEGER);
CREATE TABLE CalendarItem (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, summary TEXT, location_id INTEGER, description TEXT,
    start_date REAL, start_tz TEXT, end_date REAL, end_tz TEXT, all_day INTEGER, calendar_id INTEGER, orig_item_id INTEGER,
    orig_date REAL, organizer_id INTEGER, self_attendee_id INTEGER, status INTEGER, invitation_status INTEGER,
    availability INTEGER, privacy_level INTEGER, url TEXT, last_modified REAL, sequence_num INTEGER, birthday_id INTEGER,
    modified_properties INTEGER, external_tracking_status INTEGER, external_id TEXT, external_mod_tag TEXT,
    unique_identifier TEXT, external_schedule_id TEXT, external_rep BLOB, response_comment TEXT, hidden INTEGER,
    has_recurrences INTEGER, has_attendees INTEGER, UUID TEXT, entity_type INTEGER, priority INTEGER, due_date REAL, due_tz TEXT,
    due_all_day INTEGER, completion_date REAL, creation_date REAL, display_order INTEGER,
    created_by_id INTEGER, modified_by_id INTEGER, shared_item_created_date REAL, shared_item_modified_date REAL,
    invitation_changed_properties INTEGER, default_alarm_removed INTEGER, phantom_master INTEGER, participation_status_date REAL,
    calendar_scale TEXT, travel_time INTEGER, travel_advisory_behavior INTEGER, start_location_id INTEGER,
    client_location_id INTEGER, suggested_event_info_id INTEGER, contact_id INTEGER, conference_url TEXT, color_name TEXT,
    app_link BLOB, action BLOB, error_id INTEGER);
CREATE TABLE Recurrence (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, frequency INTEGER, interval INTEGER, week_start INTEGER,
    count INTEGER, cached_end_date REAL, cached_end_date_tz TEXT, end_date REAL, specifier TEXT, by_month_months INTEGER,
    owner_id INTEGER, external_id TEXT, external_mod_tag TEXT, external_id_tag TEXT, external_rep BLOB, uuid TEXT);
CREATE TABLE Alarm (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, trigger_date REAL, trigger_interval INTEGER, type INTEGER,
    owner_id INTEGER, external_id TEXT, external_mod_tag TEXT, external_rep BLOB, UUID TEXT, proximity INTEGER,
    disabled INTEGER, location_id INTEGER, acknowledgedDate REAL, default_alarm INTEGER, orig_alarm_id INTEGER);
CREATE TABLE Location (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, title TEXT, address TEXT, latitude REAL, longitude REAL,
    reference_frame INTEGER, address_book_id TEXT, radius REAL, routing TEXT, item_owner_id INTEGER, alarm_owner_id INTEGER);
CREATE TABLE Participant (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, entity_type INTEGER, type INTEGER, status INTEGER,
    pending_status INTEGER, role INTEGER, identity_id INTEGER, owner_id INTEGER, external_rep BLOB, UUID TEXT, email TEXT,
    is_self INTEGER, comment TEXT, comment_last_modified REAL, schedule_agent INTEGER, flags INTEGER, proposed_start_date REAL);
CREATE TABLE Identity (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, display_name TEXT, address TEXT, first_name TEXT, last_name TEXT,
    UNIQUE(display_name, address));
CREATE TABLE ExceptionDate (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, owner_id INTEGER, date REAL, sync_order INTEGER);
CREATE TABLE OccurrenceCache (day REAL, event_id INTEGER, calendar_id INTEGER, store_id INTEGER, occurrence_date REAL,
    occurrence_start_date REAL, occurrence_end_date REAL, next_reminder_date REAL);
CREATE TABLE Attachment (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, owner_id INTEGER, external_id TEXT, file_id INTEGER,
    external_mod_tag TEXT, external_rep BLOB, UUID TEXT);
CREATE INDEX CalendarItemStartDate ON CalendarItem(start_date);
CREATE INDEX CalendarItemDueDate ON CalendarItem(due_date);
INSERT INTO _SqliteDatabaseProperties VALUES ('_ClientVersion', '17010'), ('_UniqueIdentifier', 'F2B7E8A0-9C11-4E67-8A0E-3A5D1B4C7E21');
)";

} // namespace simulado
