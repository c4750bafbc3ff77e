#include "RuleRecord.h"
#include "ServerDialect.h"

namespace workbench {

namespace {

/// Version 4, as the file with the same tables. Changes are counted first, which locks the store before its rows.
constexpr wchar_t create_tables[] =
    LR"sql(
  CREATE TABLE {schema}.rule_store (
    OnlyRow boolean PRIMARY KEY DEFAULT true CHECK (OnlyRow),
    Application integer NOT NULL,
    Version integer NOT NULL,
    Changes bigint NOT NULL DEFAULT 0
  );

  CREATE FUNCTION {schema}.is_escaped_text(stored text) RETURNS boolean LANGUAGE sql IMMUTABLE STRICT
    SET search_path = pg_catalog, pg_temp AS $$
      SELECT stored ~ ('^(?:[^\\\u0001-\u001F\u007F]|\\\\|\\u00(?:[01][0-9A-F]|7F)|\\uD[C-F][0-9A-F][0-9A-F]'
                       || '|\\uD[89AB][0-9A-F][0-9A-F](?!\\uD[C-F]))*$')
    $$;
  CREATE FUNCTION {schema}.count_code_units(stored text) RETURNS integer LANGUAGE sql IMMUTABLE STRICT
    SET search_path = pg_catalog, pg_temp AS $$
      SELECT length(regexp_replace(regexp_replace(stored, '\\(?:\\|u[0-9A-F][0-9A-F][0-9A-F][0-9A-F])', 'x', 'g'),
                                   '[\U00010000-\U0010FFFF]', 'xx', 'g'))
    $$;
  CREATE FUNCTION {schema}.is_calendar_name(stored text) RETURNS boolean LANGUAGE sql IMMUTABLE STRICT
    SET search_path = pg_catalog, pg_temp AS $$
      SELECT octet_length(stored) BETWEEN 1 AND 255 AND stored !~* '[/\\\u0001-\u001F\u007F]|\.(?:csv|json|ics)$'
    $$;

  CREATE TABLE {schema}.rules (
    RuleID integer GENERATED ALWAYS AS IDENTITY PRIMARY KEY CHECK (RuleID >= 1),
    RuleName text COLLATE "C" NOT NULL UNIQUE
      CHECK ({schema}.is_escaped_text(RuleName) AND {schema}.count_code_units(RuleName) BETWEEN 1 AND 255),
    RollOffset integer NOT NULL CHECK (RollOffset BETWEEN 0 AND 99),
    DayType integer NOT NULL CHECK (DayType BETWEEN 0 AND 1),
    DayMode integer NOT NULL CHECK (DayMode BETWEEN 0 AND 1),
    DayOfMonth integer NOT NULL CHECK (DayOfMonth BETWEEN 1 AND 31),
    DayMonth integer NOT NULL CHECK (DayMonth BETWEEN 0 AND 2),
    WeekOrdinal integer NOT NULL CHECK (WeekOrdinal BETWEEN 1 AND 5),
    Weekday integer NOT NULL CHECK (Weekday BETWEEN 0 AND 6),
    WeekdayMonth integer NOT NULL CHECK (WeekdayMonth BETWEEN 0 AND 2),
    MoveToNextTradingDay integer NOT NULL CHECK (MoveToNextTradingDay BETWEEN 0 AND 1),
    Revision bigint NOT NULL DEFAULT 1 CHECK (Revision >= 1)
  );
  CREATE TABLE {schema}.symbol_source_settings (
    SettingID integer GENERATED ALWAYS AS IDENTITY PRIMARY KEY CHECK (SettingID >= 1),
    SettingName text COLLATE "C" NOT NULL
      CHECK ({schema}.is_escaped_text(SettingName) AND {schema}.count_code_units(SettingName) BETWEEN 1 AND 255),
    RuleName text COLLATE "C" NOT NULL
      CHECK ({schema}.is_escaped_text(RuleName) AND {schema}.count_code_units(RuleName) <= 255),
    CalendarName text COLLATE "C" NOT NULL DEFAULT ''
      CHECK (CalendarName = '' OR {schema}.is_calendar_name(CalendarName)),
    Months text COLLATE "C" NOT NULL DEFAULT '' CHECK (Months ~ '^F?G?H?J?K?M?N?Q?U?V?X?Z?$'),
    LastTradingDay integer NOT NULL DEFAULT 0 CHECK (LastTradingDay BETWEEN 0 AND 1),
    Revision bigint NOT NULL DEFAULT 1 CHECK (Revision >= 1)
  );
  CREATE INDEX symbol_source_settings_by_rule ON {schema}.symbol_source_settings (RuleName);
  CREATE TABLE {schema}.calendars (
    CalendarName text COLLATE "C" PRIMARY KEY CHECK ({schema}.is_calendar_name(CalendarName)),
    Title text NOT NULL CHECK ({schema}.is_escaped_text(Title)),
    Covers text NOT NULL CHECK ({schema}.is_escaped_text(Covers)),
    Source text NOT NULL CHECK ({schema}.is_escaped_text(Source)),
    FirstDay date NOT NULL CHECK (FirstDay BETWEEN '1900-01-01' AND '2199-12-31'),
    LastDay date NOT NULL CHECK (LastDay BETWEEN '1900-01-01' AND '2199-12-31'),
    Weekend integer NOT NULL CHECK (Weekend BETWEEN 0 AND 126),
    ShippedVersion integer NOT NULL CHECK (ShippedVersion >= 0),
    CHECK (FirstDay <= LastDay)
  );
  CREATE TABLE {schema}.closed_days (
    CalendarName text COLLATE "C" NOT NULL REFERENCES {schema}.calendars ON DELETE CASCADE,
    Day date NOT NULL,
    Reason text NOT NULL CHECK ({schema}.is_escaped_text(Reason)),
    PRIMARY KEY (CalendarName, Day)
  );

  CREATE FUNCTION {schema}.count_revision() RETURNS trigger LANGUAGE plpgsql SET search_path = {schema}, pg_temp AS $$
    BEGIN
      NEW.Revision := OLD.Revision + 1;
      RETURN NEW;
    END $$;
  CREATE FUNCTION {schema}.rename_in_settings() RETURNS trigger LANGUAGE plpgsql
    SET search_path = {schema}, pg_temp AS $$
    BEGIN
      UPDATE symbol_source_settings SET RuleName = NEW.RuleName WHERE RuleName = OLD.RuleName;
      RETURN NULL;
    END $$;
  CREATE FUNCTION {schema}.refuse_used_rule() RETURNS trigger LANGUAGE plpgsql
    SET search_path = {schema}, pg_temp AS $$
    BEGIN
      IF EXISTS (SELECT FROM symbol_source_settings WHERE RuleName = OLD.RuleName) THEN
        RAISE EXCEPTION 'a symbol source setting uses the rule' USING ERRCODE = 'foreign_key_violation';
      END IF;
      RETURN OLD;
    END $$;
  CREATE FUNCTION {schema}.is_closed_day(day date, first_day date, last_day date, weekend integer) RETURNS boolean
    LANGUAGE sql IMMUTABLE STRICT SET search_path = pg_catalog, pg_temp AS $$
      SELECT day BETWEEN first_day AND last_day AND weekend & (1 << CAST(extract(dow FROM day) AS integer)) = 0
    $$;
  CREATE FUNCTION {schema}.refuse_wrong_day() RETURNS trigger LANGUAGE plpgsql
    SET search_path = {schema}, pg_temp AS $$
    BEGIN
      IF EXISTS (SELECT FROM calendars WHERE CalendarName = NEW.CalendarName
                 AND NOT is_closed_day(NEW.Day, FirstDay, LastDay, Weekend)) THEN
        RAISE EXCEPTION 'a closed day is outside its calendar or on a weekend' USING ERRCODE = 'check_violation';
      END IF;
      RETURN NEW;
    END $$;
  CREATE FUNCTION {schema}.refuse_wrong_calendar() RETURNS trigger LANGUAGE plpgsql
    SET search_path = {schema}, pg_temp AS $$
    BEGIN
      IF EXISTS (SELECT FROM closed_days WHERE CalendarName = NEW.CalendarName
                 AND NOT is_closed_day(Day, NEW.FirstDay, NEW.LastDay, NEW.Weekend)) THEN
        RAISE EXCEPTION 'a calendar has other closed days' USING ERRCODE = 'check_violation';
      END IF;
      RETURN NEW;
    END $$;
  CREATE FUNCTION {schema}.count_change() RETURNS trigger LANGUAGE plpgsql SECURITY DEFINER
    SET search_path = {schema}, pg_temp AS $$
    BEGIN
      UPDATE rule_store SET Changes = Changes + 1;
      RETURN NULL;
    END $$;
  CREATE FUNCTION {schema}.refuse_truncation() RETURNS trigger LANGUAGE plpgsql
    SET search_path = {schema}, pg_temp AS $$
    BEGIN
      RAISE EXCEPTION 'a truncation would not be recorded' USING ERRCODE = 'insufficient_privilege';
    END $$;
  CREATE FUNCTION {schema}.refuse_other_user() RETURNS trigger LANGUAGE plpgsql
    SET search_path = {schema}, pg_temp AS $$
    BEGIN
      IF NOT pg_has_role(current_user, (SELECT relowner FROM pg_class WHERE oid = TG_RELID), 'MEMBER') THEN
        RAISE EXCEPTION 'only the owner of the store writes this' USING ERRCODE = 'insufficient_privilege';
      END IF;
      RETURN NULL;
    END $$;

  CREATE TRIGGER count_revision BEFORE UPDATE ON {schema}.rules
    FOR EACH ROW EXECUTE FUNCTION {schema}.count_revision();
  CREATE TRIGGER count_revision BEFORE UPDATE ON {schema}.symbol_source_settings
    FOR EACH ROW EXECUTE FUNCTION {schema}.count_revision();
  CREATE TRIGGER rename_in_settings AFTER UPDATE ON {schema}.rules
    FOR EACH ROW WHEN (OLD.RuleName <> NEW.RuleName) EXECUTE FUNCTION {schema}.rename_in_settings();
  CREATE TRIGGER refuse_used_rule BEFORE DELETE ON {schema}.rules
    FOR EACH ROW EXECUTE FUNCTION {schema}.refuse_used_rule();
  CREATE TRIGGER refuse_wrong_day BEFORE INSERT OR UPDATE ON {schema}.closed_days
    FOR EACH ROW EXECUTE FUNCTION {schema}.refuse_wrong_day();
  CREATE TRIGGER refuse_wrong_calendar BEFORE UPDATE ON {schema}.calendars
    FOR EACH ROW EXECUTE FUNCTION {schema}.refuse_wrong_calendar();
  CREATE TRIGGER refuse_other_user BEFORE INSERT OR UPDATE OR DELETE OR TRUNCATE
    ON {schema}.rule_store FOR EACH STATEMENT EXECUTE FUNCTION {schema}.refuse_other_user();
  CREATE TRIGGER count_change BEFORE INSERT OR UPDATE OR DELETE ON {schema}.rules
    FOR EACH STATEMENT EXECUTE FUNCTION {schema}.count_change();
  CREATE TRIGGER count_change BEFORE INSERT OR UPDATE OR DELETE ON {schema}.symbol_source_settings
    FOR EACH STATEMENT EXECUTE FUNCTION {schema}.count_change();
  CREATE TRIGGER count_change BEFORE INSERT OR UPDATE OR DELETE ON {schema}.calendars
    FOR EACH STATEMENT EXECUTE FUNCTION {schema}.count_change();
  CREATE TRIGGER count_change BEFORE INSERT OR UPDATE OR DELETE ON {schema}.closed_days
    FOR EACH STATEMENT EXECUTE FUNCTION {schema}.count_change();
  CREATE TRIGGER refuse_truncation BEFORE TRUNCATE ON {schema}.rules EXECUTE FUNCTION {schema}.refuse_truncation();
  CREATE TRIGGER refuse_truncation BEFORE TRUNCATE ON {schema}.symbol_source_settings
    EXECUTE FUNCTION {schema}.refuse_truncation();
  CREATE TRIGGER refuse_truncation BEFORE TRUNCATE ON {schema}.calendars EXECUTE FUNCTION {schema}.refuse_truncation();
  CREATE TRIGGER refuse_truncation BEFORE TRUNCATE ON {schema}.closed_days
    EXECUTE FUNCTION {schema}.refuse_truncation();
)sql";

/// Version 5. The record of a change belongs to the change that its workbench named; other programs get one of their
/// own for each transaction.
constexpr wchar_t create_changes[] =
    LR"sql(
  CREATE TABLE {schema}.changes (
    ChangeNumber bigint GENERATED ALWAYS AS IDENTITY UNIQUE,
    ChangeID uuid PRIMARY KEY,
    UserName text NOT NULL DEFAULT session_user,
    ChangedAt timestamptz NOT NULL DEFAULT now(),
    Happened boolean NOT NULL DEFAULT true
  );
  CREATE TABLE {schema}.changed_rows (
    RowNumber bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY,
    ChangeID uuid NOT NULL REFERENCES {schema}.changes,
    TableName text NOT NULL,
    RowKey text NOT NULL,
    OldRow jsonb,
    NewRow jsonb,
    CHECK (OldRow IS NOT NULL OR NewRow IS NOT NULL)
  );
  CREATE INDEX changed_rows_by_record ON {schema}.changed_rows (TableName, RowKey);

  CREATE FUNCTION {schema}.sign_change() RETURNS trigger LANGUAGE plpgsql SET search_path = {schema}, pg_temp AS $$
    BEGIN
      IF NOT pg_has_role(current_user, (SELECT relowner FROM pg_class WHERE oid = TG_RELID), 'MEMBER') THEN
        NEW.UserName := session_user;
        NEW.ChangedAt := now();
      END IF;
      RETURN NEW;
    END $$;
  CREATE FUNCTION {schema}.present_change() RETURNS uuid LANGUAGE plpgsql SECURITY DEFINER
    SET search_path = {schema}, pg_temp AS $$
    DECLARE
      change uuid := NULLIF(current_setting('rule_store.change', true), '');
    BEGIN
      -- A name alone proves nothing: it may be that of another user's change.
      IF NOT EXISTS (SELECT FROM changes WHERE ChangeID = change AND UserName = session_user AND ChangedAt = now()) THEN
        change := gen_random_uuid();
        INSERT INTO changes (ChangeID) VALUES (change);
        PERFORM set_config('rule_store.change', change::text, true);
      END IF;
      RETURN change;
    END $$;
  CREATE FUNCTION {schema}.record_change() RETURNS trigger LANGUAGE plpgsql SECURITY DEFINER
    SET search_path = {schema}, pg_temp AS $$
    DECLARE
      old_row jsonb := to_jsonb(OLD);
      new_row jsonb := to_jsonb(NEW);
    BEGIN
      INSERT INTO changed_rows (ChangeID, TableName, RowKey, OldRow, NewRow)
        VALUES (present_change(), TG_TABLE_NAME, COALESCE(new_row, old_row) ->> TG_ARGV[0], old_row, new_row);
      RETURN NULL;
    END $$;
  CREATE FUNCTION {schema}.record_closed_days() RETURNS trigger LANGUAGE plpgsql SECURITY DEFINER
    SET search_path = {schema}, pg_temp AS $$
    BEGIN
      INSERT INTO changed_rows (ChangeID, TableName, RowKey, OldRow, NewRow)
        SELECT present_change(), TG_TABLE_NAME, CalendarName, CASE TG_ARGV[0] WHEN 'old' THEN Days END,
               CASE TG_ARGV[0] WHEN 'new' THEN Days END
        FROM (SELECT CalendarName, jsonb_agg(jsonb_build_object('day', Day, 'reason', Reason) ORDER BY Day) AS Days
              FROM given GROUP BY CalendarName) AS calendar;
      RETURN NULL;
    END $$;

  CREATE TRIGGER sign_change BEFORE INSERT ON {schema}.changes
    FOR EACH ROW EXECUTE FUNCTION {schema}.sign_change();
  CREATE TRIGGER refuse_other_user BEFORE UPDATE OR DELETE OR TRUNCATE ON {schema}.changes
    FOR EACH STATEMENT EXECUTE FUNCTION {schema}.refuse_other_user();
  CREATE TRIGGER refuse_other_user BEFORE INSERT OR UPDATE OR DELETE OR TRUNCATE ON {schema}.changed_rows
    FOR EACH STATEMENT EXECUTE FUNCTION {schema}.refuse_other_user();
  CREATE TRIGGER record_change AFTER INSERT OR UPDATE OR DELETE ON {schema}.rules
    FOR EACH ROW EXECUTE FUNCTION {schema}.record_change('ruleid');
  CREATE TRIGGER record_change AFTER INSERT OR UPDATE OR DELETE ON {schema}.symbol_source_settings
    FOR EACH ROW EXECUTE FUNCTION {schema}.record_change('settingid');
  CREATE TRIGGER record_change AFTER INSERT OR UPDATE OR DELETE ON {schema}.calendars
    FOR EACH ROW EXECUTE FUNCTION {schema}.record_change('calendarname');
  CREATE TRIGGER record_new_days AFTER INSERT ON {schema}.closed_days REFERENCING NEW TABLE AS given
    FOR EACH STATEMENT EXECUTE FUNCTION {schema}.record_closed_days('new');
  CREATE TRIGGER record_old_days AFTER DELETE ON {schema}.closed_days REFERENCING OLD TABLE AS given
    FOR EACH STATEMENT EXECUTE FUNCTION {schema}.record_closed_days('old');
  CREATE TRIGGER record_days_before AFTER UPDATE ON {schema}.closed_days REFERENCING OLD TABLE AS given
    FOR EACH STATEMENT EXECUTE FUNCTION {schema}.record_closed_days('old');
  CREATE TRIGGER record_days_now AFTER UPDATE ON {schema}.closed_days REFERENCING NEW TABLE AS given
    FOR EACH STATEMENT EXECUTE FUNCTION {schema}.record_closed_days('new');
  -- With the rights of the owner, these would record and count what happens to a table of another user's own.
  REVOKE EXECUTE ON FUNCTION {schema}.count_change(), {schema}.present_change(), {schema}.record_change(),
    {schema}.record_closed_days() FROM PUBLIC;
)sql";

/// The numbers of a rule with what stands around each of them, separated by commas.
std::wstring list_numbers(const std::wstring& before, const std::wstring& after) {
  std::wstring list;
  for (const RuleColumn& column : rule_columns) {
    const std::string_view name = column.name;
    list.append(list.empty() ? L"" : L", ").append(before).append(name.begin(), name.end()).append(after);
  }
  return list;
}

/// A batch as a table, whose columns have these names and types.
std::wstring batch_of(const std::wstring& columns) {
  return L"json_to_recordset(CAST(? AS json)) AS given(" + columns + L")";
}

const std::wstring rule_numbers = list_numbers(L"", L"");
const std::wstring setting_columns = L"SettingName, RuleName, CalendarName, Months, LastTradingDay";
const std::wstring calendar_columns =
    L"CalendarName, Title, Covers, Source, FirstDay, LastDay, Weekend, ShippedVersion";

const std::wstring given_rule = L"position integer, RuleName text, " + list_numbers(L"", L" integer");
const std::wstring given_setting =
    L"position integer, SettingName text, RuleName text, CalendarName text, Months text, LastTradingDay integer";
const std::wstring given_calendar =
    L"CalendarName text, Title text, Covers text, Source text, FirstDay date, LastDay date, Weekend integer, "
    L"ShippedVersion integer";

void set_session_statements(ServerDialect& sql) {
  sql.begin_session =
      L"SET SESSION CHARACTERISTICS AS TRANSACTION ISOLATION LEVEL READ COMMITTED; SET synchronous_commit = on; "
      L"SET lock_timeout = '3s'; SET statement_timeout = '60s'; SET idle_in_transaction_session_timeout = '30s'; "
      L"SET DateStyle = 'ISO'; SET standard_conforming_strings = on";
  sql.read_schema =
      L"SELECT quote_ident(current_schema()), CASE current_setting('server_encoding') WHEN 'UTF8' THEN 1 ELSE 0 END";
  sql.lock_creation = L"SELECT pg_advisory_xact_lock(2053391698, hashtext(current_schema()))";
  sql.become_owner =
      L"SELECT set_config('role', pg_get_userbyid(nspowner), true) FROM pg_namespace WHERE nspname = current_schema()";
  sql.count_tables =
      L"SELECT count(*), count(*) FILTER (WHERE relname = 'rule_store' AND (SELECT count(*) FROM pg_attribute WHERE "
      L"attrelid = pg_class.oid AND attname IN ('application', 'version', 'changes')) = 3) FROM pg_class JOIN "
      L"pg_namespace ON relnamespace = pg_namespace.oid WHERE nspname = current_schema() AND relname IN "
      L"('rule_store', 'rules', 'symbol_source_settings', 'calendars', 'closed_days', 'changes', 'changed_rows')";
  sql.read_version = L"SELECT Application, Version FROM {schema}.rule_store";
  sql.write_version =
      L"INSERT INTO {schema}.rule_store (Application, Version) VALUES (?, ?) "
      L"ON CONFLICT (OnlyRow) DO UPDATE SET Application = EXCLUDED.Application, Version = EXCLUDED.Version";
  sql.first_version = 4;
  sql.migrations = {create_tables, create_changes};

  sql.lock_store = L"SELECT Changes FROM {schema}.rule_store FOR UPDATE";
  sql.read_counter = L"SELECT Changes FROM {schema}.rule_store";
  sql.insert_change =
      L"INSERT INTO {schema}.changes (ChangeID) VALUES (CAST(set_config('rule_store.change', ?, true) AS uuid))";
  sql.insert_void_change =
      L"INSERT INTO {schema}.changes (ChangeID, Happened) VALUES (CAST(? AS uuid), false) ON CONFLICT DO NOTHING";
  sql.select_happened =
      L"SELECT CASE WHEN Happened THEN 1 ELSE 0 END FROM {schema}.changes WHERE ChangeID = CAST(? AS uuid)";
  const std::wstring change =
      L"UserName, to_char(ChangedAt AT TIME ZONE 'UTC', 'YYYY-MM-DD\"T\"HH24:MI:SS.MS\"Z\"'), "
      L"CAST(OldRow AS text), CAST(NewRow AS text)";
  sql.select_changes = L"SELECT " + change +
                       L" FROM {schema}.changed_rows JOIN {schema}.changes USING (ChangeID) "
                       L"WHERE TableName = 'rules' AND RowKey = ? ORDER BY RowNumber";
  sql.select_all_changes = L"SELECT replace(CAST(ChangeID AS text), '-', ''), TableName, RowKey, " + change +
                           L" FROM {schema}.changes LEFT JOIN {schema}.changed_rows USING (ChangeID) WHERE Happened "
                           L"ORDER BY ChangeNumber, RowNumber";
}

void set_rule_statements(ServerDialect& sql) {
  // The work of the driver grows with the number of columns, so a rule is one. The colon shows that no number is
  // missing.
  const std::wstring select_rules =
      L"SELECT concat_ws(' ', RuleID, Revision, " + rule_numbers + L") || ':' || RuleName FROM {schema}.rules ";
  sql.select_rules = select_rules + L"ORDER BY RuleID";
  sql.select_rule = select_rules + L"WHERE RuleID = ?";
  std::wstring values = L"?";
  for (std::size_t i = 0; i < rule_columns.size(); ++i) values += L", ?";
  sql.insert_rule =
      L"INSERT INTO {schema}.rules (RuleName, " + rule_numbers + L") VALUES (" + values + L") RETURNING RuleID";
  sql.update_rule = L"UPDATE {schema}.rules SET (RuleName, " + rule_numbers + L") = (" + values +
                    L") WHERE RuleID = ? AND Revision = ?";
  sql.delete_rule = L"DELETE FROM {schema}.rules WHERE RuleID = ? AND Revision = ?";
  sql.insert_rules = L"INSERT INTO {schema}.rules (RuleName, " + rule_numbers + L") SELECT RuleName, " + rule_numbers +
                     L" FROM " + batch_of(given_rule) + L" ORDER BY position";
  const std::wstring given_numbers = L"ROW(" + list_numbers(L"given.", L"") + L")";
  sql.import_rules = L"WITH given AS MATERIALIZED (SELECT * FROM " + batch_of(given_rule) +
                     L"), changed AS (UPDATE {schema}.rules SET (" + rule_numbers + L") = " + given_numbers +
                     L" FROM given WHERE rules.RuleName = given.RuleName AND ROW(" + list_numbers(L"rules.", L"") +
                     L") IS DISTINCT FROM " + given_numbers + L") INSERT INTO {schema}.rules (RuleName, " +
                     rule_numbers + L") SELECT RuleName, " + rule_numbers +
                     L" FROM given WHERE NOT EXISTS (SELECT FROM {schema}.rules AS present WHERE present.RuleName = "
                     L"given.RuleName) ORDER BY position";
}

void set_setting_statements(ServerDialect& sql) {
  const std::wstring select_settings =
      L"SELECT SettingID, Revision, " + setting_columns + L" FROM {schema}.symbol_source_settings ";
  sql.select_settings = select_settings + L"ORDER BY SettingID";
  sql.select_setting = select_settings + L"WHERE SettingID = ?";
  sql.insert_setting = L"INSERT INTO {schema}.symbol_source_settings (" + setting_columns +
                       L") VALUES (?, ?, ?, ?, ?) RETURNING SettingID";
  sql.update_setting = L"UPDATE {schema}.symbol_source_settings SET (" + setting_columns +
                       L") = (?, ?, ?, ?, ?) WHERE SettingID = ? AND Revision = ?";
  sql.delete_setting = L"DELETE FROM {schema}.symbol_source_settings WHERE SettingID = ? AND Revision = ?";
  sql.delete_settings = L"DELETE FROM {schema}.symbol_source_settings";
  sql.insert_settings = L"INSERT INTO {schema}.symbol_source_settings (" + setting_columns + L") SELECT " +
                        setting_columns + L" FROM " + batch_of(given_setting) + L" ORDER BY position";
}

void set_calendar_statements(ServerDialect& sql) {
  sql.select_calendars = L"SELECT " + calendar_columns +
                         L", Day, Reason FROM {schema}.calendars LEFT JOIN {schema}.closed_days USING (CalendarName) "
                         L"ORDER BY CalendarName, Day";
  sql.replace_calendars =
      L"INSERT INTO {schema}.calendars (" + calendar_columns + L") SELECT " + calendar_columns + L" FROM " +
      batch_of(given_calendar) +
      L" ON CONFLICT (CalendarName) DO UPDATE SET Title = EXCLUDED.Title, Covers = EXCLUDED.Covers, "
      L"Source = EXCLUDED.Source, FirstDay = EXCLUDED.FirstDay, LastDay = EXCLUDED.LastDay, "
      L"Weekend = EXCLUDED.Weekend, ShippedVersion = EXCLUDED.ShippedVersion";
  sql.delete_closed_days = L"DELETE FROM {schema}.closed_days WHERE CalendarName IN (SELECT CalendarName FROM " +
                           batch_of(given_calendar) + L")";
  sql.insert_closed_days =
      L"INSERT INTO {schema}.closed_days (CalendarName, Day, Reason) SELECT CalendarName, Day, Reason FROM " +
      batch_of(L"CalendarName text, Day date, Reason text");
  sql.delete_content =
      L"DELETE FROM {schema}.symbol_source_settings; DELETE FROM {schema}.rules; DELETE FROM {schema}.calendars";
}

void set_copy_statements(ServerDialect& sql) {
  const auto sequence = [](const wchar_t* table, const wchar_t* column) {
    return std::wstring(L"CAST(pg_get_serial_sequence(quote_ident(current_schema()) || '.") + table + L"', '" + column +
           L"') AS regclass)";
  };
  const std::wstring rules = sequence(L"rules", L"ruleid");
  const std::wstring settings = sequence(L"symbol_source_settings", L"settingid");
  sql.begin_snapshot = L"SET TRANSACTION ISOLATION LEVEL REPEATABLE READ, READ ONLY";
  sql.select_last_numbers = L"SELECT coalesce(pg_sequence_last_value(" + rules +
                            L"), 0), coalesce(pg_sequence_last_value(" + settings + L"), 0)";
  // A sequence cannot be set to 0: then its first number comes next.
  const auto set = [](const std::wstring& name, const wchar_t* given) {
    return L"setval(" + name + L", greatest(" + given + L", 1), " + given + L" > 0)";
  };
  sql.set_last_numbers = L"SELECT " + set(rules, L"rule") + L", " + set(settings, L"setting") +
                         L" FROM (SELECT CAST(? AS bigint), CAST(? AS bigint)) AS given(rule, setting)";
  const auto copy = [](const wchar_t* table, const std::wstring& columns, const std::wstring& given) {
    return std::wstring(L"INSERT INTO {schema}.") + table + L" (" + columns + L") OVERRIDING SYSTEM VALUE SELECT " +
           columns + L" FROM " + batch_of(given) + L" ORDER BY position";
  };
  sql.copy_rules =
      copy(L"rules", L"RuleID, Revision, RuleName, " + rule_numbers, L"RuleID integer, Revision bigint, " + given_rule);
  sql.copy_settings = copy(L"symbol_source_settings", L"SettingID, Revision, " + setting_columns,
                           L"SettingID integer, Revision bigint, " + given_setting);
  sql.delete_changes = L"TRUNCATE {schema}.changed_rows, {schema}.changes";
  sql.copy_changes =
      L"INSERT INTO {schema}.changes (ChangeID, UserName, ChangedAt) SELECT ChangeID, UserName, ChangedAt FROM " +
      batch_of(L"position integer, ChangeID uuid, UserName text, ChangedAt timestamptz") + L" ORDER BY position";
  sql.copy_changed_rows =
      L"INSERT INTO {schema}.changed_rows (ChangeID, TableName, RowKey, OldRow, NewRow) SELECT ChangeID, TableName, "
      L"RowKey, OldRow, NewRow FROM " +
      batch_of(L"position integer, ChangeID uuid, TableName text, RowKey text, OldRow jsonb, NewRow jsonb") +
      L" ORDER BY position";
}

ServerDialect create_postgres() {
  ServerDialect sql;
  // The driver's logs would hold the password.
  sql.driver = {{L"PostgreSQL Unicode", L"PostgreSQL Unicode(x64)"},
                {{L"Debug", L"0"}, {L"CommLog", L"0"}, {L"LFConversion", L"0"}},
                {},
                {L"SSLmode", L"verify-full"},
                "fe_sendauth:",
                "password authentication failed",
                {"too many connections", "too many clients", "remaining connection slots"},
                {L"PGHOSTADDR", L"PGSERVICE", L"PGSERVICEFILE"}};
  sql.duplicate_name = "(rulename)=(";
  set_session_statements(sql);
  set_rule_statements(sql);
  set_setting_statements(sql);
  set_calendar_statements(sql);
  set_copy_statements(sql);
  return sql;
}

}  // namespace

const ServerDialect& postgres() {
  // Never destroyed, because a thread that was given up may still use it while the process ends.
  static const ServerDialect& dialect = *new ServerDialect(create_postgres());
  return dialect;
}

}  // namespace workbench
