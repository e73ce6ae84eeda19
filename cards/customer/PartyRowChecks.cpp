// Address and reference row checks of the party cards.
#include "cards/customer/PartyRowChecks.h"

#include <map>

#include "cards/customer/GridRows.h"
#include "module/CardValues.h"
#include "module/modCardError.h"

namespace vantor20 {
namespace {

constexpr std::int32_t kMsgTipoIndirizzo = 910;
constexpr std::int32_t kMsgRigaIncompleta = 10712;
constexpr std::int32_t kMsgIndirizzoPredefinito = 21005;
constexpr std::int32_t kMsgTipoInvio = 1337;
constexpr std::int32_t kMsgFlagInvio = 1338;

// The sending flags of a reference person on a customer's documents.
const char* const kSendingFlags[] = {"InvioOfferte",   "InvioOrdCli",       "InvioDDTEme",
                                     "InvioFattEme",   "InvioNotaCre",      "InvioRicFis",
                                     "InvioDDTRicCli", "InvioSollecito",    "InvioCRM",
                                     "InvioEstrattoConto"};

bool AllBlank(const RecordsetPtr& rs, std::initializer_list<const char*> columns) {
  for (const char* c : columns)
    if (!IsBlank(rs->Fields(c).Value())) return false;
  return true;
}

// 10712 "del riferimento" for a reference row with nothing to reach the person by.
void AddIfEmptyReference(const RecordsetPtr& rs, std::string& warnings) {
  if (AllBlank(rs, {"Cognome", "Nome", "Telefono1", "Telefono2", "Cellulare", "DataNascita", "Mail"}))
    AddCardMessage(kMsgRigaIncompleta, warnings, {"del riferimento", TextOf(rs->Fields("IdRiferimento").Value())});
}

}  // namespace

const char* AddressTypeCaption(int tipoIndirizzo) {
  switch (tipoIndirizzo) {
    case 0: return "Sped. Fattura";
    case 1: return "Sped. Merce";
    case 2: return "Sped. Riba";
    default: return "";
  }
}

void CheckAddressTypes(corvina20::VxBody& addresses, std::string& errors) {
  ForEachRow(addresses, [&](const RecordsetPtr& rs, long) {
    const Variant& tipo = rs->Fields("TipoIndirizzo").Value();
    if (IsBlank(tipo) || *AddressTypeCaption(tipo.ToLong()) == '\0')
      AddCardMessage(kMsgTipoIndirizzo, errors, {TextOf(rs->Fields("NrIndirizzo").Value())});
  });
}

void CheckAddressRows(corvina20::VxBody& addresses, std::string& warnings) {
  std::map<int, int> defaults;
  ForEachRow(addresses, [&](const RecordsetPtr& rs, long) {
    if (AllBlank(rs, {"RagioneSociale", "RagioneSociale2", "Indirizzo"}))
      AddCardMessage(kMsgRigaIncompleta, warnings,
                     {"dell'indirizzo", TextOf(rs->Fields("NrIndirizzo").Value())});
    const Variant& tipo = rs->Fields("TipoIndirizzo").Value();
    if (!IsBlank(tipo) && FlagOf(rs->Fields("Default").Value())) ++defaults[tipo.ToLong()];
  });
  for (const auto& [tipo, count] : defaults)
    if (count > 1) AddCardMessage(kMsgIndirizzoPredefinito, warnings, {AddressTypeCaption(tipo)});
}

void CheckEmptyReferenceRows(corvina20::VxBody& references, std::string& warnings) {
  ForEachRow(references, [&](const RecordsetPtr& rs, long) { AddIfEmptyReference(rs, warnings); });
}

void CheckReferenceRows(corvina20::VxBody& references, bool invioMail, std::string& warnings) {
  // Row by row: a row's sending text follows its own empty-row text.
  ForEachRow(references, [&](const RecordsetPtr& rs, long) {
    AddIfEmptyReference(rs, warnings);
    if (!invioMail || !IsBlank(rs->Fields("TipoInvio").Value())) return;
    for (const char* flag : kSendingFlags)
      if (FlagOf(rs->Fields(flag).Value())) {
        AddCardMessage(kMsgTipoInvio, warnings, {TextOf(rs->Fields("IdRiferimento").Value())});
        return;
      }
  });
}

void CheckReferenceSending(corvina20::VxBody& references, const std::vector<const char*>& flags,
                           std::string& errors) {
  ForEachRow(references, [&](const RecordsetPtr& rs, long) {
    bool anyFlag = false;
    for (const char* flag : flags) anyFlag = anyFlag || FlagOf(rs->Fields(flag).Value());
    const Variant& tipo = rs->Fields("TipoInvio").Value();
    const bool hasTipo = !IsBlank(tipo) && tipo.ToLong() != 0;
    const std::string id = TextOf(rs->Fields("IdRiferimento").Value());
    if (!anyFlag && hasTipo) AddCardMessage(kMsgFlagInvio, errors, {id});
    if (anyFlag && !hasTipo) AddCardMessage(kMsgTipoInvio, errors, {id});
  });
}

}  // namespace vantor20
