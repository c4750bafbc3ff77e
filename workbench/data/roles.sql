-- The roles of a desk's store. An administrator runs this file once, in the database that is to hold the store:
--
--   psql --dbname=DATABASE --file=roles.sql
--
-- It creates the schema "rules", to which every connection to this database then leads, and three roles:
--
--   rule_owner   creates the store and brings it to a new version
--   rule_editor  reads and changes rules, settings and calendars
--   rule_reader  reads them
--
-- Each person gets a user of their own with one of the roles:
--
--   CREATE ROLE anna LOGIN PASSWORD '...' IN ROLE rule_editor;
--
-- The first to open the store must have the role rule_owner.

DO $$
DECLARE
  role text;
BEGIN
  FOREACH role IN ARRAY ARRAY['rule_owner', 'rule_editor', 'rule_reader'] LOOP
    IF NOT EXISTS (SELECT FROM pg_roles WHERE rolname = role) THEN
      EXECUTE format('CREATE ROLE %I NOLOGIN', role);
    END IF;
  END LOOP;
  EXECUTE format('ALTER DATABASE %I SET search_path = rules', current_database());
END $$;

CREATE SCHEMA IF NOT EXISTS rules AUTHORIZATION rule_owner;
GRANT USAGE ON SCHEMA rules TO rule_editor, rule_reader;
ALTER DEFAULT PRIVILEGES FOR ROLE rule_owner IN SCHEMA rules GRANT SELECT ON TABLES TO rule_reader;
ALTER DEFAULT PRIVILEGES FOR ROLE rule_owner IN SCHEMA rules GRANT SELECT ON SEQUENCES TO rule_editor, rule_reader;
ALTER DEFAULT PRIVILEGES FOR ROLE rule_owner IN SCHEMA rules GRANT SELECT, INSERT, UPDATE, DELETE ON TABLES TO rule_editor;
