// Party keys, role flags and what goes with the last role, the duplicate check
// on fiscal code and VAT number, reference numbering and yes/no values: the
// module's own procedures on the real schema.
#include <gtest/gtest.h>

#include "module/ModuloVantor.h"
#include "PartyFixture.h"

namespace vantor20::test {
namespace {

using corvina20::LockType;

class PartyIdentity : public PartyFixture {};

TEST_F(PartyIdentity, NextFreeIdIsTheHighestKeyOverAllPartiesPlusOne) {
  EXPECT_EQ(NextFreeIdAnagrafica(), 1);
  // Gaps below the maximum are not reused, and a party of no role counts.
  Sql("INSERT INTO STDAnagrafiche (IdAnagrafica, Cliente) VALUES (3, 1)");
  Sql("INSERT INTO STDAnagrafiche (IdAnagrafica) VALUES (57)");
  Sql("INSERT INTO STDAnagrafiche (IdAnagrafica, Vettore) VALUES (10, 1)");
  EXPECT_EQ(NextFreeIdAnagrafica(), 58);
}

TEST_F(PartyIdentity, TheLastRoleTakesTheRowAndOnlyThenItsAddressesAndReferences) {
  Sql("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Cliente, Vettore) "
      "VALUES (5, 'Trasporti e Vendite', 1, 1)");
  Sql("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Cliente, Vettore) "
      "VALUES (6, 'Solo Trasporti', NULL, 1)");
  for (int id : {5, 6}) {
    const std::string key = std::to_string(id);
    Sql("INSERT INTO STDAnagIndirizzi (IdAnagrafica, NrIndirizzo, TipoIndirizzo) VALUES (" + key +
        ", 1, 1)");
    Sql("INSERT INTO STDAnagRiferimenti (IdAnagrafica, IdRiferimento, Cognome) VALUES (" + key +
        ", 1, 'Bianchi')");
  }

  // Also a customer: the row stays with the carrier flag cleared, and so do
  // its child rows.
  ClearPartyRole(5, "Vettore");
  EXPECT_EQ(Count("STDAnagrafiche", "IdAnagrafica = 5 AND Vettore = 0 AND Cliente = 1"), 1);
  EXPECT_FALSE(ClearPartyChildRows(5));
  EXPECT_EQ(Count("STDAnagIndirizzi", "IdAnagrafica = 5"), 1);
  EXPECT_EQ(Count("STDAnagRiferimenti", "IdAnagrafica = 5"), 1);

  // Only a carrier (Cliente NULL counts as not set): the row goes, then the
  // child rows of that party and of no other.
  ClearPartyRole(6, "Vettore");
  EXPECT_EQ(Count("STDAnagrafiche", "IdAnagrafica = 6"), 0);
  EXPECT_TRUE(ClearPartyChildRows(6));
  EXPECT_EQ(Count("STDAnagIndirizzi", "IdAnagrafica = 6"), 0);
  EXPECT_EQ(Count("STDAnagRiferimenti", "IdAnagrafica = 6"), 0);
  EXPECT_EQ(Count("STDAnagIndirizzi", "IdAnagrafica = 5"), 1);

  // The customer role was the last one of party 5.
  ClearPartyRole(5, "Cliente");
  EXPECT_EQ(Count("STDAnagrafiche", "IdAnagrafica = 5"), 0);
  EXPECT_TRUE(ClearPartyChildRows(5));
  EXPECT_EQ(Count("STDAnagIndirizzi", "1 = 1"), 0);
  EXPECT_EQ(Count("STDAnagRiferimenti", "1 = 1"), 0);

  // A party that is not there: nothing to clear.
  EXPECT_NO_THROW(ClearPartyRole(99, "Cliente"));
}

TEST_F(PartyIdentity, DuplicateFieldLooksAtOtherPartiesOfTheRoleWhenAsked) {
  Sql("INSERT INTO STDAnagrafiche (IdAnagrafica, CodiceFiscale, PartitaIva, Cliente) "
      "VALUES (1, 'RSSMRA80A01H501U', '01234567890', 1)");
  Sql("INSERT INTO STDAnagrafiche (IdAnagrafica, CodiceFiscale, Fornitore) "
      "VALUES (2, 'RSSMRA80A01H501U', 1)");
  Sql("INSERT INTO STDAnagrafiche (IdAnagrafica, PartitaIva, Vettore) "
      "VALUES (3, '98765432109', 1)");
  const Variant cf("RSSMRA80A01H501U");

  // Role check: only another customer counts, the own row never does.
  EXPECT_FALSE(CheckDuplicateField(kRoleCliente, "CodiceFiscale", cf, 1, true));
  EXPECT_TRUE(CheckDuplicateField(kRoleCliente, "CodiceFiscale", cf, 2, true));
  EXPECT_TRUE(CheckDuplicateField(kRoleFornitore, "CodiceFiscale", cf, 1, true));
  EXPECT_FALSE(CheckDuplicateField(kRoleVettore, "CodiceFiscale", cf, 0, true));
  // Without it any other party counts, whatever the role code says.
  EXPECT_TRUE(CheckDuplicateField(kRoleVettore, "CodiceFiscale", cf, 1));
  EXPECT_TRUE(CheckDuplicateField(9, "CodiceFiscale", cf, 1, false));
  // A role code outside 1..5 with the check asked for is never a duplicate.
  EXPECT_FALSE(CheckDuplicateField(0, "CodiceFiscale", cf, 1, true));
  EXPECT_FALSE(CheckDuplicateField(6, "CodiceFiscale", cf, 1, true));
  // VAT numbers: exact values only.
  EXPECT_TRUE(CheckDuplicateField(kRoleVettore, "PartitaIva", Variant("98765432109"), 1));
  EXPECT_FALSE(CheckDuplicateField(kRoleVettore, "PartitaIva", Variant("98765432109"), 3));
  EXPECT_FALSE(CheckDuplicateField(kRoleVettore, "PartitaIva", Variant("9876543210"), 1));
  EXPECT_FALSE(CheckDuplicateField(kRoleCliente, "PartitaIva", Variant("01234567890"), 1, true));
}

TEST_F(PartyIdentity, NewReferencesAreNumberedOnPerPartyInGridOrder) {
  Sql("INSERT INTO STDAnagRiferimenti (IdAnagrafica, IdRiferimento, Cognome) VALUES (7, 1, 'Uno')");
  Sql("INSERT INTO STDAnagRiferimenti (IdAnagrafica, IdRiferimento, Cognome) VALUES (7, 4, 'Quattro')");
  Sql("INSERT INTO STDAnagRiferimenti (IdAnagrafica, IdRiferimento, Cognome) VALUES (8, 10, 'Altro')");

  auto grid = [&](int id) {
    return h.db.connection->OpenRecordset(
        "SELECT * FROM STDAnagRiferimenti WHERE IdAnagrafica = " + std::to_string(id) +
            " ORDER BY IdRiferimento",
        {}, LockType::Batch);
  };
  auto addRow = [](const RecordsetPtr& rs, int id, const char* surname) {
    rs->AddNew();
    rs->Fields("IdAnagrafica") = Variant(std::int32_t{id});
    rs->Fields("Cognome") = Variant(surname);
  };

  // Party 7: 1 and 4 stored; three new rows get 5, 6, 7 in the grid's
  // order, whatever other parties hold.
  RecordsetPtr rs = grid(7);
  addRow(rs, 7, "Cinque");
  addRow(rs, 7, "Sei");
  addRow(rs, 7, "Sette");
  AssignReferenceIds(rs, 7);
  EXPECT_TRUE(rs->IsEOF());
  rs->UpdateBatch();
  RecordsetPtr saved = h.db.connection->OpenRecordset(
      "SELECT IdRiferimento, Cognome FROM STDAnagRiferimenti WHERE IdAnagrafica = 7 "
      "ORDER BY IdRiferimento");
  std::string numbering;
  for (; !saved->IsEOF(); saved->MoveNext())
    numbering += saved->Fields("IdRiferimento").Value().ToString() + "=" +
                 saved->Fields("Cognome").Value().ToString() + " ";
  EXPECT_EQ(numbering, "1=Uno 4=Quattro 5=Cinque 6=Sei 7=Sette ");

  // A party without references starts at 1.
  RecordsetPtr fresh = grid(9);
  addRow(fresh, 9, "Primo");
  addRow(fresh, 9, "Secondo");
  AssignReferenceIds(fresh, 9);
  fresh->UpdateBatch();
  EXPECT_EQ(Count("STDAnagRiferimenti", "IdAnagrafica = 9 AND IdRiferimento IN (1, 2)"), 2);

  // No rows, or no recordset at all: nothing to number, nothing raised.
  EXPECT_NO_THROW(AssignReferenceIds(grid(42), 42));
  EXPECT_NO_THROW(AssignReferenceIds(nullptr, 42));
}

TEST_F(PartyIdentity, TrueTextIsVeroOrTrueInAnyCaseOrTheNumberOne) {
  for (const Variant& yes :
       {Variant("vero"), Variant("VERO"), Variant("Vero"), Variant("true"), Variant("tRuE"),
        Variant(true), Variant(std::int16_t{1}), Variant(std::int32_t{1}), Variant(1.0),
        Variant("1")})
    EXPECT_TRUE(IsTrueText(yes)) << yes.Describe();
  for (const Variant& no :
       {Variant(std::int32_t{-1}), Variant(std::int16_t{0}), Variant(false), Variant("Falso"),
        Variant("false"), Variant(""), Variant(" vero"), Variant("sì"), Variant(2.0),
        Variant::Null(), Variant()})
    EXPECT_FALSE(IsTrueText(no)) << no.Describe();
}

}  // namespace
}  // namespace vantor20::test
