// The usage checks of the shared party procedures: before a card lets a role,
// a carrier, an agent, a loader or an account go, these say where it is still
// used. Each area is one query that only asks whether a row exists; the first
// area that answers gives the text. Keys and roles are in ModuloVantor.cpp.
#include <vector>

#include "module/ModuloVantor.h"
#include "module/modDatabaseUtility.h"
#include "module/modErrorHandling.h"
#include "module/modMainModule.h"

namespace vantor20 {
namespace {

using corvina20::kCompareDifferent;
using corvina20::kCompareEqual;
using corvina20::LockType;
using corvina20::QueryBuilder;

// The area texts fill the "%s" of the refusal messages. Some start with a
// blank and some do not; the messages were written around them, so they are
// kept exactly as they are.
constexpr const char* kCicloAttivo = "Ciclo Attivo";
constexpr const char* kCicloAttivoConto = " Ciclo Attivo";  // AccountUsage only
constexpr const char* kCicloPassivo = " Ciclo Passivo";
constexpr const char* kMagazzino = " Magazzino";
constexpr const char* kContabilita = "la Contabilità";
constexpr const char* kAnagraficaAgenti = "l'Anagrafica Agenti";

// A query on `table` selecting `field`, at most one row: enough to tell use.
QueryBuilder Probe(std::string_view table, std::string_view field) {
  QueryBuilder query(App().GetConnection());
  query.AddFields(field);
  query.SetTable(table);
  query.SetTop(1);
  return query;
}

// True when the query returns a row (the recordset is not at both BOF and EOF).
bool Found(const QueryBuilder& query) {
  RecordsetPtr rs = query.Open(LockType::ReadOnly);
  return !IsRecordsetClosed(rs) && !(rs->IsBOF() && rs->IsEOF());
}

// A document head of the party, always narrowed by its kind: for the
// contact role the cycle's quotation kind only, since a prospect appears on
// nothing else; for every other role every kind but the quotation, which
// names the party as a prospect (the contact role's own documents).
bool DocumentHeadFound(std::string_view table, std::int32_t id, int role,
                       std::string_view quotationKind) {
  QueryBuilder query = Probe(table, "IdDoc");
  query.AddCondition("IdAnagrafica", kCompareEqual, Variant(id));
  query.AddCondition("TipoDocumento", role == kRoleContatto ? kCompareEqual : kCompareDifferent,
                     Variant(quotationKind));
  return Found(query);
}

}  // namespace

std::string PartyUsage(std::int32_t idAnagrafica, int role) {
  try {
    const Variant id(idAnagrafica);
    if (DocumentHeadFound("ATTDocTeste", idAnagrafica, role, kTipoDocOffertaCliente))
      return kCicloAttivo;
    if (DocumentHeadFound("PASDocTeste", idAnagrafica, role, kTipoDocRichiestaOfferta))
      return kCicloPassivo;

    QueryBuilder movements = Probe("MagMovTeste", "IdMovimento");
    movements.AddCondition("IdAnagrafica", kCompareEqual, id);
    if (Found(movements)) return kMagazzino;

    QueryBuilder journal = Probe("COGPrimeNoteRCont", "IdPrimaNota");
    journal.AddCondition("IdCliFor", kCompareEqual, id);
    if (role == kRoleCliente) {
      journal.AddCondition("TipoCliFor", kCompareEqual, Variant(kTipoCliForCliente));
    } else if (role == kRoleFornitore) {
      journal.AddCondition("TipoCliFor", kCompareEqual, Variant(kTipoCliForFornitore));
    } else {
      // A contact, agent or carrier has no side of its own: a line on either
      // side names the party. Lines of no side (0) carry no party at all.
      journal.AddCondition("TipoCliFor", kCompareDifferent, Variant(kTipoCliForNessuno));
    }
    if (Found(journal)) return kContabilita;

    QueryBuilder agents = Probe("STDAnagraficaAgenti", "IdAnagrafica");
    agents.AddCondition("IdFornitore", kCompareEqual, id);
    if (Found(agents)) return kAnagraficaAgenti;
    return {};
  } catch (...) {
    RaiseError(-1, "PartyUsage");
  }
}

std::string CarrierUsage(std::int32_t idAnagrafica) {
  try {
    const Variant id(idAnagrafica);
    const std::vector<Variant> ids{id, id, id};
    constexpr std::string_view kAnyCarrier = "IdVettore1 = ? or IdVettore2 = ? or IdVettore3 = ?";

    QueryBuilder sales = Probe("ATTDocCoda", "IdDoc");
    sales.AddConditionText(kAnyCarrier, ids);
    if (Found(sales)) return kCicloAttivo;

    QueryBuilder purchases = Probe("PASDocCoda", "IdDoc");
    purchases.AddConditionText(kAnyCarrier, ids);
    if (Found(purchases)) return kCicloPassivo;
    return {};
  } catch (...) {
    RaiseError(-1, "CarrierUsage");
  }
}

std::string AgentUsage(std::int32_t idAnagrafica) {
  try {
    const Variant id(idAnagrafica);
    QueryBuilder documents = Probe("ATTDocTeste", "IdDoc");
    documents.AddConditionText("IdAgente1 = ? or IdAgente2 = ?", {id, id});
    if (Found(documents)) return kCicloAttivo;

    // Other agents only: an agent recorded as its own area manager does not
    // keep itself in use.
    QueryBuilder agents = Probe("STDAnagraficaAgenti", "IdAnagrafica");
    agents.AddCondition("IdCapoArea", kCompareEqual, id);
    agents.AddCondition("IdAnagrafica", kCompareDifferent, id);
    if (Found(agents)) return kAnagraficaAgenti;
    return {};
  } catch (...) {
    RaiseError(-1, "AgentUsage");
  }
}

std::string LoaderUsage(std::int32_t idAnagrafica) {
  try {
    QueryBuilder tails = Probe("ATTDocCoda", "IdDoc");
    tails.AddCondition("IdCaricatore", kCompareEqual, Variant(idAnagrafica));
    return Found(tails) ? kCicloAttivo : "";
  } catch (...) {
    RaiseError(-1, "LoaderUsage");
  }
}

std::string AccountUsage(const Variant& codConto) {
  try {
    QueryBuilder sales = Probe("ATTDocRighe", "IdDoc");
    sales.AddCondition("CodConto", kCompareEqual, codConto);
    if (Found(sales)) return kCicloAttivoConto;

    QueryBuilder purchases = Probe("PASDocRighe", "IdDoc");
    purchases.AddCondition("CodConto", kCompareEqual, codConto);
    if (Found(purchases)) return kCicloPassivo;

    QueryBuilder journal = Probe("COGPrimeNoteRCont", "IdPrimaNota");
    journal.AddCondition("CodConto", kCompareEqual, codConto);
    if (Found(journal)) return kContabilita;
    return {};
  } catch (...) {
    RaiseError(-1, "AccountUsage");
  }
}

}  // namespace vantor20
