// The merge of a duplicate's CRM data into the party kept, and the deletion
// of a duplicate's CRM data. The statements are written as the system writes
// them (blanks included); ids are decimal numbers of the module's own, never
// user text, so they go into the text rather than as bound values.
#include "cards/contact/CrmMerge.h"

#include "module/modDatabaseUtility.h"
#include "module/modErrorHandling.h"
#include "module/modMainModule.h"

namespace vantor20 {
namespace {

// The Leads condition for a row of kind `tipoAnag`: a lead's CRM rows carry
// Leads = 1, a party's Leads = 0.
std::string LeadsCondition(std::int16_t tipoAnag) {
  return tipoAnag == kTipoAnagLead ? " and Leads = 1" : " and Leads = 0";
}

std::string Number(std::int32_t n) { return std::to_string(n); }

}  // namespace

std::vector<std::string> UnisciAnagraficaCRMSql(std::int32_t idOrigine,
                                                std::int32_t idDestinazione,
                                                std::int16_t tipoAnag) {
  const std::string s = Number(idOrigine);
  const std::string d = Number(idDestinazione);
  const std::string l = LeadsCondition(tipoAnag);
  std::vector<std::string> sql;
  // A profiling is copied unless the party kept has the same code with the
  // same evaluation. The copies keep the source's Leads as it is (a lead's
  // rows arrive with Leads = 1): deliberate, not to be reset to 0 here.
  sql.push_back(
      "Insert into CRMAnagraficheProfilazione (IdAnagrafica,codProfilazione,Leads,codFamiglia,"
      "codTipologia,Valutazione,DataProfilazione)"
      " Select " + d +
      ",codProfilazione,Leads,codFamiglia,codTipologia,Valutazione,DataProfilazione FROM "
      "CRMAnagraficheProfilazione COR"
      " where idAnagrafica = " + s + l +
      " and not exists(Select top 1 IdAnagrafica,codProfilazione,Valutazione FROM "
      "CRMAnagraficheProfilazione "
      " where idAnagrafica = " + d +
      " and codProfilazione = COR.codProfilazione and Valutazione = COR.Valutazione)");
  // The moved events keep their Leads too; it is not reset to 0.
  sql.push_back("Update CRMCalendarEvents Set Idanagrafica = " + d + " where idAnagrafica = " + s + l);
  sql.push_back("Update CRMCalendarEventsSTO Set Idanagrafica = " + d + " where idAnagrafica = " + s + l);
  if (tipoAnag == kTipoAnagLead) {
    // Only a lead's notes are appended, after a line break.
    sql.push_back(
        "Update CRMAnagraficaClienti "
        " set Note =  Convert(varchar(max),Note) + Char(13) + Char(10) + (Select "
        "Convert(varchar(max),C.Note) From CRMAnagraficaClienti C "
        " where C.IdAnagrafica = " + s + ")"
        " where IDAnagrafica = " + d);
  }
  return sql;
}

std::vector<std::string> EliminaAnagraficaCRMSql(std::int32_t idAnagrafica, std::int16_t tipoAnag) {
  const std::string i = Number(idAnagrafica);
  const std::string l = LeadsCondition(tipoAnag);
  // Deliberately not STDAnagrafiche: a party's own record is the cards' to
  // delete, with their usage checks.
  return {
      "Delete CRMAnagraficheProfilazione where idanagrafica = " + i + l,
      "Delete CRMAnagraficaClienti where idanagrafica = " + i,
      "Delete CRMAnagrafiche where idanagrafica = " + i,
      "Delete CRMCalendarEvents where idanagrafica = " + i + l,
      "Delete CRMCalendarEventsSTO where idanagrafica = " + i + l,
  };
}

void UnisciAnagraficaCRM(const RecordsetPtr& duplicates, std::int32_t idDestinazione,
                         std::int16_t tipoAnag) {
  try {
    if (IsRecordsetClosed(duplicates) || (duplicates->IsBOF() && duplicates->IsEOF())) return;
    const std::int32_t idOrigine = FieldValue(duplicates, Variant("IdAnagrafica")).ToLong();

    corvina20::DataObject data(App().GetConnection());
    data.BeginTrans();
    for (const std::string& sql : UnisciAnagraficaCRMSql(idOrigine, idDestinazione, tipoAnag))
      data.Execute(sql);
    data.CommitTrans();
  } catch (...) {
    // The data object rolls back what it began as it goes.
    RaiseError(-1, "UnisciAnagraficaCRM");
  }
}

void EliminaAnagraficaCRM(const RecordsetPtr& duplicates, std::int32_t idAnagrafica,
                          std::int16_t tipoAnag) {
  try {
    const std::vector<std::string> statements = EliminaAnagraficaCRMSql(idAnagrafica, tipoAnag);
    corvina20::DataObject data(App().GetConnection());
    data.BeginTrans();
    // Once per remaining row, every time for the same id, and the list is
    // left at its end: deliberate, and harmless since the deletes are
    // idempotent. Callers reposition by bookmark before the next row.
    while (!IsRecordsetClosed(duplicates) && !duplicates->IsEOF()) {
      for (const std::string& sql : statements) data.Execute(sql);
      duplicates->MoveNext();
    }
    data.CommitTrans();
  } catch (...) {
    RaiseError(-1, "EliminaAnagraficaCRM");
  }
}

}  // namespace vantor20
