-- The web host's users. Passwords are kept only as argon2id hashes in the
-- libsodium string format (algorithm, parameters and salt inside).
CREATE TABLE CORUtenti (
  NomeUtente nvarchar(50) NOT NULL,
  HashPassword nvarchar(200) NOT NULL,
  Attivo bit NOT NULL DEFAULT (1),
  DataCreazione datetime NULL,
  CONSTRAINT PK_CORUtenti PRIMARY KEY (NomeUtente)
)
GO
