// The codes the shared party procedures speak: party roles and their flag
// columns on STDAnagrafiche, the journal side of a party (TipoCliFor) and the
// document kinds that the usage checks single out. Values that the database
// stores are the ones its catalogues hold (ATTTipiDocumento,
// PASTipiDocumento); docs/party-procedures.md explains each choice.
// Not for: procedures (ModuloVantor.h).
#pragma once

#include <cstdint>
#include <string_view>

namespace vantor20 {

// Role codes of the duplicate check and of PartyUsage. Not the numbering of
// the report types.
enum PartyRole : int {
  kRoleCliente = 1,
  kRoleFornitore = 2,
  kRoleContatto = 3,
  kRoleAgente = 4,
  kRoleVettore = 5,
};

// The flag column of each role, in the order of the codes.
inline constexpr std::string_view kRoleFlagColumns[] = {"Cliente", "Fornitore", "Contatto",
                                                        "Agente", "Vettore"};

inline constexpr bool IsPartyRole(int role) { return role >= kRoleCliente && role <= kRoleVettore; }

// The flag column of `role`; "" for a code outside 1..5.
inline constexpr std::string_view RoleFlagColumn(int role) {
  return IsPartyRole(role) ? kRoleFlagColumns[role - 1] : std::string_view{};
}

// TipoCliFor of journal lines (COGPrimeNoteRCont), stock movements and
// history snapshots: the side on which a party stands.
inline constexpr std::int16_t kTipoCliForNessuno = 0;
inline constexpr std::int16_t kTipoCliForCliente = 1;
inline constexpr std::int16_t kTipoCliForFornitore = 2;

// The quotation kinds of each cycle: the only documents that may name a
// prospect (a party holding just the contact role). An offer to a customer in
// the sales cycle, a request for quotation in the purchase cycle.
inline constexpr std::string_view kTipoDocOffertaCliente = "OFC";
inline constexpr std::string_view kTipoDocRichiestaOfferta = "ROF";

}  // namespace vantor20
