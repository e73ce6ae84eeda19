// The carrier card: transport companies named on the tails of sales and
// purchase documents. A carrier is a party of STDAnagrafiche with Vettore set;
// the card shows the common party fields plus the hauliers' register number
// and the default transport charge. It is the model of the common card
// pattern the other minor cards follow.
#pragma once

#include "cards/minor/MinorPartyCard.h"

namespace vantor20 {

class AnagraficaVettori final : public MinorPartyCard {
 public:
  AnagraficaVettori();

  corvina20::Frame& frmVettore;
  corvina20::TextField& txtNumeroIscrizioneAlbo;
  corvina20::NumberField& currSpeseTrasporto;

 private:
  void OnInizialize(bool& ok, std::string& keyField, std::string& displayField);
  void OnActionBefore(int operation, bool& cancel);
  void OnActionInside(int operation);
  void OnActionAfter(int operation);
  // Taking over an existing party that is not a carrier yet, by fiscal code
  // or VAT number typed in new mode.
  void OfferTakeOver(const char* field, const Variant& value, std::int32_t found,
                     std::int32_t question);

  bool takenOver_ = false;        // the new carrier is an existing party taken over
  std::int32_t replacedId_ = 0;   // the party shown before "new", when linking is on
};

}  // namespace vantor20
