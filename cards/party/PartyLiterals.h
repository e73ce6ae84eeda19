// The module's own warning texts that the customer and supplier save checks
// share, kept exactly as the system shows them (the public-body text ends
// with a blank on purpose). The dictionary's numbered messages are not here.
#pragma once

namespace vantor20 {

inline constexpr const char* kEnteSospensione =
    "L'anagrafica è stata indicata come ente pubblico e in sospensione di imposta. ";
inline constexpr const char* kBLSenzaAliquote =
    "L'anagrafica è riferita ad un soggetto a fiscalità agevolata ma non sono state inserite le aliquote iva per "
    "i beni e per i servizi";
inline constexpr const char* kBLSenzaBeni =
    "L'anagrafica è riferita ad un soggetto a fiscalità agevolata ma non è stata inserita l'aliquota iva per i "
    "beni";
inline constexpr const char* kBLSenzaServizi =
    "L'anagrafica è riferita ad un soggetto a fiscalità agevolata ma non è stata inserita l'aliquota iva per i "
    "servizi";

}  // namespace vantor20
