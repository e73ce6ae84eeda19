// See PgHostObjects.h. The LIKE translation builds a regular expression from
// the T-SQL pattern; the function is IMMUTABLE, so with a constant or bound
// pattern PostgreSQL builds it once per statement, not once per row.
#include "data/postgres/PgHostObjects.h"

#include "core/Text.h"

namespace corvina20::data::pg {

std::string PostgresTypeOf(std::string_view sqlServerType) {
  std::string type = text::Lower(sqlServerType);
  std::erase(type, ' ');
  std::string base = type.substr(0, type.find('('));
  std::string args = type.size() > base.size() ? type.substr(base.size()) : "";
  if (base == "int" || base == "integer") return "integer";
  if (base == "tinyint" || base == "smallint") return "smallint";
  if (base == "bigint" || base == "real") return base;
  if (base == "bit") return kBitDomain;
  if (base == "money") return "numeric(19,4)";
  if (base == "smallmoney") return "numeric(10,4)";
  if (base == "float") return "double precision";
  if (base == "decimal" || base == "numeric") return "numeric" + args;
  if (base == "datetime" || base == "smalldatetime" || base == "datetime2") return "timestamp(0)";
  if (base == "date") return "date";
  // Lengths are not enforced, as on SQLite: a database moved from SQLite
  // keeps its longer texts, and the cards check the lengths they allow.
  if (base == "text" || base == "ntext" || base == "char" || base == "nchar" || base == "varchar" ||
      base == "nvarchar")
    return "text";
  return "";
}

std::string HostObjectsScript() {
  return R"SQL(
CREATE COLLATION IF NOT EXISTS corvina_ci (provider = icu, locale = 'und-u-ks-level2', deterministic = false);
DO $$ BEGIN CREATE DOMAIN corvina_bit AS smallint; EXCEPTION WHEN duplicate_object THEN NULL; END $$;
CREATE OR REPLACE FUNCTION corvina_like_regex(p text, e text) RETURNS text
LANGUAGE plpgsql IMMUTABLE PARALLEL SAFE AS $fn$
DECLARE
  r text := '^';
  i int := 1;
  n int := length(p);
  c text;
  j int;
BEGIN
  IF p IS NULL THEN RETURN NULL; END IF;
  WHILE i <= n LOOP
    c := substr(p, i, 1);
    IF e IS NOT NULL AND c = e AND i < n THEN
      i := i + 1;
      r := r || regexp_replace(substr(p, i, 1), '([^[:alnum:][:space:]])', '\\\1', 'g');
    ELSIF c = '%' THEN
      r := r || '.*';
    ELSIF c = '_' THEN
      r := r || '.';
    ELSIF c = '[' THEN
      j := strpos(substr(p, i + 1), ']');
      IF j <= 1 THEN
        r := r || '\[';
      ELSE
        r := r || '[' || replace(substr(p, i + 1, j - 1), '\', '\\') || ']';
        i := i + j;
      END IF;
    ELSE
      r := r || regexp_replace(c, '([^[:alnum:][:space:]])', '\\\1', 'g');
    END IF;
    i := i + 1;
  END LOOP;
  RETURN r || '$';
END
$fn$;
CREATE OR REPLACE FUNCTION corvina_like(t text, p text, e text DEFAULT NULL) RETURNS boolean
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $fn$
  SELECT (lower(t COLLATE "und-x-icu") COLLATE "C") ~ (corvina_like_regex(lower(p COLLATE "und-x-icu"), e) COLLATE "C")
$fn$;
CREATE OR REPLACE FUNCTION corvina_identity_follow() RETURNS trigger
LANGUAGE plpgsql AS $fn$
DECLARE
  seq text := pg_get_serial_sequence(quote_ident(TG_TABLE_SCHEMA) || '.' || quote_ident(TG_TABLE_NAME), TG_ARGV[0]);
  top bigint;
  last bigint;
  called boolean;
BEGIN
  EXECUTE format('SELECT max(%I) FROM %I.%I', TG_ARGV[0], TG_TABLE_SCHEMA, TG_TABLE_NAME) INTO top;
  EXECUTE format('SELECT last_value, is_called FROM %s', seq) INTO last, called;
  IF top IS NOT NULL AND top > (CASE WHEN called THEN last ELSE last - 1 END) THEN
    PERFORM setval(seq, top);
  END IF;
  RETURN NULL;
END
$fn$;
)SQL";
}

}  // namespace corvina20::data::pg
