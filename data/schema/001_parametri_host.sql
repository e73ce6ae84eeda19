-- Host parameters: one row per key, shared by every workstation.
-- Flags hold '0'/'1'; a missing key or a NULL value reads as unset.
CREATE TABLE CORParametri (
  Chiave nvarchar(100) NOT NULL PRIMARY KEY,
  Valore nvarchar(4000) NULL
)
GO
