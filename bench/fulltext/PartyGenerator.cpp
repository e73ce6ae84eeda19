// The synthetic parties; see PartyGenerator.h. Surnames are a head of real
// common ones plus a long tail made of syllables, so words range from very
// common to found in a handful of rows, as in a real register. Towns are
// drawn by population, so the big ones are common words of the town index.
#include "PartyGenerator.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <unordered_set>

#include "data/Backend.h"
#include "data/fulltext/FtsTokenizer.h"

namespace corvina20::bench {
namespace {

// splitmix64: small, fast, identical everywhere.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}
  std::uint64_t Next() {
    std::uint64_t z = (state_ += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
  }
  double Unit() { return static_cast<double>(Next() >> 11) / 9007199254740992.0; }
  std::size_t Below(std::size_t n) { return static_cast<std::size_t>(Unit() * static_cast<double>(n)); }
  // Skewed towards the first items: index = n * u^skew.
  std::size_t Skewed(std::size_t n, double skew) {
    return std::min(n - 1, static_cast<std::size_t>(std::pow(Unit(), skew) * static_cast<double>(n)));
  }
  bool Chance(double p) { return Unit() < p; }
  template <class C>
  const auto& Pick(const C& items) {
    return items[Below(std::size(items))];
  }

 private:
  std::uint64_t state_;
};

constexpr std::string_view kCommonSurnames[] = {
    "Rossi", "Russo", "Ferrari", "Esposito", "Bianchi", "Romano", "Colombo", "Ricci", "Marino",
    "Greco", "Bruno", "Gallo", "Conti", "De Luca", "Mancini", "Costa", "Giordano", "Rizzo",
    "Lombardi", "Moretti", "D'Amico", "D'Angelo", "Dell'Orto", "Fontana", "Caruso", "Leone",
    "Longo", "Martinelli", "Serra", "Villa"};
constexpr std::string_view kPrefixes[] = {
    "Bel", "Bon", "Bru", "Cal", "Car", "Cas", "Cel", "Col", "Cor", "Dal", "Fab", "Fer", "Gal",
    "Gar", "Gio", "Gra", "Lan", "Lom", "Mar", "Mas", "Mor", "Nar", "Pal", "Pan", "Pel", "Pes",
    "Pic", "Ros", "Rug", "Sal", "San", "Sca", "Ser", "Tor", "Val", "Ven", "Vit", "Zan", "Bar",
    "Bian", "Mon", "Pag", "Riz", "Sar", "Tos", "Ber", "Cap", "Fio", "Mel", "Nic"};
constexpr std::string_view kSuffixes[] = {"etti", "otti", "ini", "oni", "elli", "ucci", "azzi",
                                          "ato",  "ari",  "ieri", "esi", "ola", "ardi", "ero",
                                          "ino",  "one",  "ale", "oli", "uzzi", "anti"};
// Middle syllables of the wide tail's surnames ("Bel" + "la" + "otti").
constexpr std::string_view kMiddles[] = {
    "ba", "be", "bi", "ca", "ce", "chi", "da", "de", "di", "fa", "fe", "ga", "ghe", "la",
    "le", "li", "lo", "ma", "me", "mi", "na", "ne", "ni", "pa", "pe", "ra", "re", "ri",
    "ro", "sa", "se", "ta", "te", "ti", "to", "va", "ve", "vi", "za", "zo"};
constexpr std::string_view kFirstNames[] = {
    "Mario", "Luigi", "Giuseppe", "Giovanni", "Antonio", "Francesco", "Paolo", "Marco", "Andrea",
    "Stefano", "Roberto", "Alessandro", "Luca", "Matteo", "Davide", "Simone", "Nicola", "Carlo",
    "Franco", "Sergio", "Maria", "Anna", "Giulia", "Francesca", "Laura", "Chiara", "Sara", "Elena",
    "Paola", "Silvia", "Valentina", "Federica", "Lucia", "Rita", "Teresa", "Rosa", "Barbara",
    "Monica", "Cristina", "Ilaria"};
constexpr std::string_view kSectors[] = {
    "Trasporti", "Costruzioni", "Impianti", "Edilizia", "Servizi", "Immobiliare", "Meccanica",
    "Informatica", "Alimentari", "Ricambi", "Autofficina", "Ferramenta", "Arredamenti", "Tessile",
    "Elettrica", "Idraulica", "Logistica", "Serramenti", "Ceramiche", "Consulenze", "Pubblicità",
    "Autotrasporti", "Carpenteria", "Falegnameria", "Tipografia", "Ottica", "Farmacia",
    "Ristorazione", "Pasticceria", "Panificio", "Macelleria", "Vivai", "Giardinaggio",
    "Termoidraulica", "Elettronica", "Automazioni", "Verniciature", "Minuterie", "Stampi",
    "Plastica", "Metalli", "Marmi", "Vetreria", "Calzature", "Pelletteria", "Gioielleria",
    "Distribuzione", "Ingrosso", "Commerciale", "Agricola"};
// More given names, for registers whose names are to be as varied as real ones.
constexpr std::string_view kMoreFirstNames[] = {
    "Alberto", "Angelo", "Bruno", "Claudio", "Daniele", "Emanuele", "Enrico", "Fabio", "Federico",
    "Filippo", "Gabriele", "Giacomo", "Gianluca", "Giorgio", "Lorenzo", "Massimo", "Maurizio", "Michele",
    "Pietro", "Raffaele", "Riccardo", "Salvatore", "Tommaso", "Umberto", "Vincenzo", "Alessia", "Angela",
    "Beatrice", "Camilla", "Carla", "Daniela", "Eleonora", "Emma", "Giorgia", "Irene", "Marta",
    "Martina", "Michela", "Nadia", "Patrizia", "Roberta", "Sofia", "Stefania", "Veronica", "Vittoria"};
constexpr std::string_view kFancy[] = {
    "Aurora", "Delta", "Alfa", "Omega", "Stella", "Sole", "Europa", "Adriatica", "Tirrena",
    "Alpina", "Futura", "Globo", "Zenit", "Orione", "Pegaso", "Fenice", "Atlante", "Vega",
    "Nettuno", "Eridano", "Iride", "Lyra", "Arcobaleno", "Quadrifoglio", "Girasole", "Primavera",
    "Aquila", "Falco", "Gabbiano", "Delfino", "Sirio", "Polaris", "Centauro", "Minerva", "Giunone",
    "Vesta", "Cerere", "Diana", "Aurelia", "Flaminia", "Emilia", "Cassia", "Appia", "Salaria",
    "Tiburtina", "Prenestina", "Aretina", "Senese", "Pisana", "Lucchese"};
constexpr std::string_view kStreets[] = {
    "Roma", "Garibaldi", "Mazzini", "Verdi", "Dante", "Marconi", "Matteotti", "Cavour", "Gramsci",
    "Leopardi", "Manzoni", "Vittorio Veneto", "XX Settembre", "IV Novembre", "della Repubblica",
    "Europa", "Milano", "Torino", "San Francesco", "Don Minzoni", "Kennedy", "Carducci",
    "Pascoli", "Galilei", "Volta", "Colombo", "Battisti", "Nazionale", "Emilia", "Aurelia",
    "dei Mille", "Piave", "Trento", "Trieste", "Fiume", "Solferino", "Magenta", "Puccini",
    "Rossini", "Bellini"};
constexpr std::string_view kStreetKinds[] = {"Via", "Via", "Via", "Via", "Viale", "Piazza", "Corso", "Vicolo"};

struct Town {
  std::string_view name;
  std::string_view province;
  std::string_view cap;
  std::string_view code;  // cadastral code, for fiscal codes
  double population;      // thousands
};
constexpr Town kTowns[] = {
    {"Roma", "RM", "00100", "H501", 2750}, {"Milano", "MI", "20100", "F205", 1370},
    {"Napoli", "NA", "80100", "F839", 910}, {"Torino", "TO", "10100", "L219", 850},
    {"Palermo", "PA", "90100", "G273", 630}, {"Genova", "GE", "16100", "D969", 560},
    {"Bologna", "BO", "40100", "A944", 390}, {"Firenze", "FI", "50100", "D612", 360},
    {"Bari", "BA", "70100", "A662", 316}, {"Catania", "CT", "95100", "C351", 300},
    {"Verona", "VR", "37100", "L781", 255}, {"Venezia", "VE", "30100", "L736", 250},
    {"Messina", "ME", "98100", "F158", 220}, {"Padova", "PD", "35100", "G224", 208},
    {"Trieste", "TS", "34100", "L424", 200}, {"Brescia", "BS", "25100", "B157", 196},
    {"Parma", "PR", "43100", "G337", 196}, {"Prato", "PO", "59100", "G999", 195},
    {"Modena", "MO", "41100", "F257", 185}, {"Reggio Calabria", "RC", "89100", "H224", 172},
    {"Reggio nell'Emilia", "RE", "42100", "H223", 170}, {"Perugia", "PG", "06100", "G478", 162},
    {"Ravenna", "RA", "48100", "H199", 156}, {"Livorno", "LI", "57100", "E625", 154},
    {"Cagliari", "CA", "09100", "B354", 150}, {"Foggia", "FG", "71100", "D643", 148},
    {"Rimini", "RN", "47900", "H294", 150}, {"Salerno", "SA", "84100", "H703", 128},
    {"Ferrara", "FE", "44100", "D548", 130}, {"Sassari", "SS", "07100", "I452", 125},
    {"Monza", "MB", "20900", "F704", 123}, {"Bergamo", "BG", "24100", "A794", 120},
    {"Forlì", "FC", "47100", "D704", 117}, {"Trento", "TN", "38100", "L378", 118},
    {"Vicenza", "VI", "36100", "L840", 111}, {"Bolzano", "BZ", "39100", "A952", 107},
    {"Novara", "NO", "28100", "F952", 104}, {"Piacenza", "PC", "29100", "G535", 103},
    {"Ancona", "AN", "60100", "A271", 100}, {"Udine", "UD", "33100", "L483", 99},
    {"Arezzo", "AR", "52100", "A390", 99}, {"Cesena", "FC", "47521", "C573", 97},
    {"Lecce", "LE", "73100", "E506", 95}, {"La Spezia", "SP", "19100", "E463", 93},
    {"Como", "CO", "22100", "C933", 84}, {"Sesto San Giovanni", "MI", "20099", "I690", 81},
    {"Cinisello Balsamo", "MI", "20092", "C707", 75}, {"San Giovanni Rotondo", "FG", "71013", "H926", 27},
    {"San Giovanni in Persiceto", "BO", "40017", "G467", 28}, {"San Giovanni Lupatoto", "VR", "37057", "H924", 25},
    {"Castelnuovo Rangone", "MO", "41051", "C242", 15}, {"Castelnuovo del Garda", "VR", "37014", "C225", 13},
    {"Sant'Agata de' Goti", "BN", "82019", "I197", 11}, {"Città di Castello", "PG", "06012", "C745", 39},
    {"Cantù", "CO", "22063", "B639", 40}, {"Saronno", "VA", "21047", "I441", 39},
    {"Vigevano", "PV", "27029", "L872", 63}, {"Carpi", "MO", "41012", "B819", 72},
    {"Imola", "BO", "40026", "E289", 70}, {"Faenza", "RA", "48018", "D458", 59},
    {"Lugo", "RA", "48022", "E730", 32}, {"Sassuolo", "MO", "41049", "I462", 40},
    {"Mirandola", "MO", "41037", "F240", 24}, {"Pordenone", "PN", "33170", "G888", 51},
    {"Treviso", "TV", "31100", "L407", 85}, {"Belluno", "BL", "32100", "A757", 35},
    {"Rovigo", "RO", "45100", "H620", 50}, {"Mantova", "MN", "46100", "E897", 49},
    {"Cremona", "CR", "26100", "D150", 71}, {"Lodi", "LO", "26900", "E648", 45},
    {"Pavia", "PV", "27100", "G388", 71}, {"Varese", "VA", "21100", "L682", 80},
    {"Lecco", "LC", "23900", "E507", 48}, {"Sondrio", "SO", "23100", "I829", 21},
    {"Biella", "BI", "13900", "A859", 44}, {"Vercelli", "VC", "13100", "L750", 46},
    {"Asti", "AT", "14100", "A479", 75}, {"Cuneo", "CN", "12100", "D205", 56},
    {"Alessandria", "AL", "15121", "A182", 92}, {"Savona", "SV", "17100", "I480", 60},
    {"Imperia", "IM", "18100", "E290", 42}, {"Massa", "MS", "54100", "F023", 68},
    {"Lucca", "LU", "55100", "E715", 89}, {"Pisa", "PI", "56100", "G702", 90},
    {"Pistoia", "PT", "51100", "G713", 90}, {"Siena", "SI", "53100", "I726", 53},
    {"Grosseto", "GR", "58100", "E202", 81}, {"Viterbo", "VT", "01100", "M082", 67},
    {"Rieti", "RI", "02100", "H282", 47}, {"Latina", "LT", "04100", "E472", 127},
    {"Frosinone", "FR", "03100", "D810", 46}, {"Pescara", "PE", "65100", "G482", 119},
    {"Chieti", "CH", "66100", "C632", 51}, {"Teramo", "TE", "64100", "L103", 54},
    {"L'Aquila", "AQ", "67100", "A345", 70}, {"Campobasso", "CB", "86100", "B519", 49},
    {"Potenza", "PZ", "85100", "G942", 66}, {"Matera", "MT", "75100", "F052", 60},
    {"Cosenza", "CS", "87100", "D086", 66}, {"Catanzaro", "CZ", "88100", "C352", 87},
    {"Trapani", "TP", "91100", "L331", 67}, {"Agrigento", "AG", "92100", "A089", 58},
    {"Siracusa", "SR", "96100", "I754", 120}, {"Ragusa", "RG", "97100", "H163", 73},
    {"Nuoro", "NU", "08100", "F979", 35}, {"Oristano", "OR", "09170", "G113", 31}};

std::string SyntheticSurname(Random& r) {
  return std::string(kPrefixes[r.Skewed(std::size(kPrefixes), 1.6)]) +
         std::string(kSuffixes[r.Skewed(std::size(kSuffixes), 1.4)]);
}

// The sparse tail: kSparseTailSize surnames, each a prefix, two syllables
// and a suffix drawn once (a seed of its own) from a grid of 50 x 4,900 x 20
// combinations, so that only a few of them lie one letter from another, as
// with real surnames. The grids of SyntheticSurname and of the wide tail
// use every combination of a few syllables instead: "Dalnaini", "Dalneini",
// "Dalnoini" all exist, and a letter dropped from one is one edit from all.
constexpr std::size_t kSparseTailSize = 40000;

const std::vector<std::string>& SparseTail() {
  static const std::vector<std::string> tail = [] {
    constexpr std::string_view kConsonants = "bcdfglmnprstvz";
    constexpr std::string_view kVowels = "aeiou";
    Random r(0x7a11);
    std::vector<std::string> out;
    out.reserve(kSparseTailSize);
    while (out.size() < kSparseTailSize) {
      std::string s(kPrefixes[r.Skewed(std::size(kPrefixes), 1.3)]);
      for (int k = 0; k < 2; ++k) {
        s += kConsonants[r.Below(kConsonants.size())];
        s += kVowels[r.Below(kVowels.size())];
      }
      out.push_back(s + std::string(kSuffixes[r.Skewed(std::size(kSuffixes), 1.2)]));
    }
    return out;
  }();
  return tail;
}

std::string DrawSurname(Random& r, bool wide) {
  if (!wide) {
    if (r.Chance(0.3)) return std::string(kCommonSurnames[r.Skewed(std::size(kCommonSurnames), 1.5)]);
    return SyntheticSurname(r);
  }
  double x = r.Unit();
  if (x < 0.15) return std::string(kCommonSurnames[r.Skewed(std::size(kCommonSurnames), 1.5)]);
  if (x < 0.35) return SyntheticSurname(r);
  return std::string(kPrefixes[r.Skewed(std::size(kPrefixes), 1.3)]) + std::string(r.Pick(kMiddles)) +
         std::string(kSuffixes[r.Skewed(std::size(kSuffixes), 1.2)]);
}

std::string Surname(Random& r, bool wide, bool sparse) {
  if (!sparse) return DrawSurname(r, wide);
  if (r.Chance(0.15)) return std::string(kCommonSurnames[r.Skewed(std::size(kCommonSurnames), 1.5)]);
  return SparseTail()[r.Below(SparseTail().size())];
}

const Town& PickTown(Random& r) {
  static const double total = [] {
    double t = 0;
    for (const Town& town : kTowns) t += town.population;
    return t;
  }();
  double x = r.Unit() * total;
  for (const Town& town : kTowns) {
    x -= town.population;
    if (x < 0) return town;
  }
  return kTowns[0];
}

std::string LegalForm(Random& r) {
  static constexpr std::pair<std::string_view, double> kForms[] = {
      {"Srl", 0.40}, {"S.r.l.", 0.12}, {"SRL", 0.05}, {"Spa", 0.07}, {"S.p.A.", 0.04},
      {"Snc", 0.12}, {"Sas", 0.12},   {"Srls", 0.08}};
  double x = r.Unit();
  for (const auto& [form, p] : kForms) {
    x -= p;
    if (x < 0) return std::string(form);
  }
  return "Srl";
}

// --- fiscal identity --------------------------------------------------------

std::string VatNumber(Random& r) {
  std::string digits;
  for (int i = 0; i < 7; ++i) digits += static_cast<char>('0' + (i == 0 ? 1 + r.Below(9) : r.Below(10)));
  int office = 1 + static_cast<int>(r.Below(100));
  digits += static_cast<char>('0' + office / 100);
  digits += static_cast<char>('0' + office / 10 % 10);
  digits += static_cast<char>('0' + office % 10);
  int sum = 0;
  for (int i = 0; i < 10; ++i) {
    int d = digits[static_cast<std::size_t>(i)] - '0';
    if (i % 2 == 1) d = d * 2 > 9 ? d * 2 - 9 : d * 2;
    sum += d;
  }
  digits += static_cast<char>('0' + (10 - sum % 10) % 10);
  return digits;
}

std::string Letters(std::string_view word) {
  std::string out;
  for (char c : word)
    if (c >= 'A' && c <= 'Z') out += c;
    else if (c >= 'a' && c <= 'z') out += static_cast<char>(c - 'a' + 'A');
  return out;
}

bool IsVowel(char c) { return c == 'A' || c == 'E' || c == 'I' || c == 'O' || c == 'U'; }

std::string NameCode(std::string_view word, bool firstName) {
  std::string consonants, vowels;
  for (char c : Letters(word)) (IsVowel(c) ? vowels : consonants) += c;
  if (firstName && consonants.size() >= 4) return {consonants[0], consonants[2], consonants[3]};
  std::string code = consonants + vowels + "XXX";
  return code.substr(0, 3);
}

std::string PersonalCode(Random& r, std::string_view surname, std::string_view name, const Town& town) {
  static constexpr int kOdd[] = {1, 0, 5, 7, 9, 13, 15, 17, 19, 21, 2, 4, 18, 20, 11, 3, 6, 8, 12, 14, 16, 10, 22, 25, 24, 23};
  std::string code = NameCode(surname, false) + NameCode(name, true);
  int year = 40 + static_cast<int>(r.Below(60));
  code += static_cast<char>('0' + year / 10);
  code += static_cast<char>('0' + year % 10);
  code += "ABCDEHLMPRST"[r.Below(12)];
  int day = 1 + static_cast<int>(r.Below(28)) + (name.back() == 'a' ? 40 : 0);
  code += static_cast<char>('0' + day / 10);
  code += static_cast<char>('0' + day % 10);
  code += town.code;
  int sum = 0;
  for (std::size_t i = 0; i < 15; ++i) {
    char c = code[i];
    int v = c >= '0' && c <= '9' ? c - '0' : c - 'A';
    sum += i % 2 == 0 ? kOdd[v] : v;
  }
  code += static_cast<char>('A' + sum % 26);
  return code;
}

// --- duplicates -------------------------------------------------------------

std::vector<std::string> Words(const std::string& s) {
  std::vector<std::string> out;
  std::string w;
  for (char c : s) {
    if (c == ' ') {
      if (!w.empty()) out.push_back(w);
      w.clear();
    } else {
      w += c;
    }
  }
  if (!w.empty()) out.push_back(w);
  return out;
}

std::string Join(const std::vector<std::string>& words) {
  std::string out;
  for (const auto& w : words) out += (out.empty() ? "" : " ") + w;
  return out;
}

bool IsLegalForm(const std::string& w) {
  for (std::string_view f : {"Srl", "S.r.l.", "SRL", "Spa", "S.p.A.", "Snc", "Sas", "Srls", "SNC", "SAS", "SPA"})
    if (w == f) return true;
  return false;
}

std::string Upper(std::string s) {
  for (char& c : s)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return s;
}

// The same name written differently, as a second clerk might type it.
std::pair<std::string, std::string> Rewrite(Random& r, const std::string& name) {
  std::vector<std::string> words = Words(name);
  bool legal = !words.empty() && IsLegalForm(words.back());
  for (int attempt = 0; attempt < 6; ++attempt) {
    switch (r.Below(6)) {
      case 0:  // word order
        if (words.size() >= 3 || (words.size() == 2 && !legal)) {
          std::swap(words[0], words[1]);
          return {Join(words), "ordine delle parole"};
        }
        break;
      case 1:  // legal form left out
        if (legal && words.size() >= 2) {
          words.pop_back();
          return {Join(words), "senza forma giuridica"};
        }
        break;
      case 2:  // legal form written another way
        if (legal) {
          std::string& f = words.back();
          if (f == "Srl") f = "S.R.L.";
          else if (f == "S.r.l." || f == "SRL") f = "srl";
          else if (f == "Spa") f = "S.p.A.";
          else if (f == "S.p.A.") f = "SPA";
          else f = Upper(f);
          return {Join(words), "forma giuridica abbreviata"};
        }
        break;
      case 3:  // capitals
        return {Upper(name), "maiuscole"};
      case 4:  // brothers written out or shortened
        for (auto& w : words) {
          if (w == "F.lli") {
            w = "Fratelli";
            return {Join(words), "F.lli per esteso"};
          }
          if (w == "Fratelli") {
            w = "F.lli";
            return {Join(words), "Fratelli abbreviato"};
          }
        }
        break;
      case 5:  // apostrophes and accents typed plainly
        {
          std::string plain;
          bool changed = false;
          for (std::size_t i = 0; i < name.size(); ++i) {
            if (name[i] == '\'') {
              plain += ' ';
              changed = true;
            } else if (name.compare(i, 2, "à") == 0) {
              plain += "a'";
              ++i;
              changed = true;
            } else {
              plain += name[i];
            }
          }
          if (changed) return {plain, "apostrofi e accenti"};
        }
        break;
    }
  }
  return {Upper(name), "maiuscole"};
}

Party Original(Random& r, std::int32_t id, const GeneratorOptions& options) {
  Party p;
  p.id = id;
  const Town& town = PickTown(r);
  std::string surname = Surname(r, options.wideSurnames, options.sparseNames);
  auto firstName = [&] {
    return std::string(options.sparseNames && r.Chance(0.5) ? r.Pick(kMoreFirstNames) : r.Pick(kFirstNames));
  };
  bool person = false;
  std::string first;
  double x = r.Unit();
  if (x < 0.30) {
    p.ragioneSociale = surname + " " + std::string(kSectors[r.Skewed(std::size(kSectors), 1.8)]) + " " + LegalForm(r);
  } else if (x < 0.45) {
    p.ragioneSociale = std::string(kSectors[r.Skewed(std::size(kSectors), 1.8)]) + " " + surname + " " + LegalForm(r);
  } else if (x < 0.65) {
    p.ragioneSociale = std::string(r.Pick(kFancy)) + " " + std::string(kSectors[r.Skewed(std::size(kSectors), 1.8)]) +
                       " " + LegalForm(r);
  } else if (x < 0.80) {
    first = firstName();
    p.ragioneSociale = surname + " " + first;
    person = true;
  } else if (x < 0.90) {
    first = firstName();
    p.ragioneSociale = std::string(kSectors[r.Skewed(std::size(kSectors), 1.8)]) + " " + std::string(r.Pick(kFancy)) +
                       " di " + surname + " " + first + " & C. " + (r.Chance(0.5) ? "Snc" : "Sas");
  } else if (x < 0.95) {
    p.ragioneSociale = std::string(r.Chance(0.5) ? "F.lli " : "Fratelli ") + surname + " " + LegalForm(r);
  } else {
    p.ragioneSociale = std::string(r.Pick(kFancy)) + " " + LegalForm(r);
  }
  p.indirizzo = std::string(r.Pick(kStreetKinds)) + " " + std::string(kStreets[r.Skewed(std::size(kStreets), 1.7)]) +
                " " + std::to_string(1 + r.Below(150));
  p.cap = std::string(town.cap);
  p.citta = std::string(town.name);
  p.provincia = std::string(town.province);
  p.partitaIva = VatNumber(r);
  p.codiceFiscale = person ? PersonalCode(r, surname, first, town) : p.partitaIva;
  p.telefono = "0" + std::to_string(10 + r.Below(90)) + " " + std::to_string(1000000 + r.Below(9000000));
  std::string user = Letters(surname);
  for (char& c : user) c = static_cast<char>(c - 'A' + 'a');
  p.email = (person ? user : "info") + "@" + user + std::to_string(id % 97) + ".it";
  return p;
}

// The words of a name without its legal form, in order: two originals with
// the same key would be two parties no name search can tell apart.
std::string NameKey(const std::string& name) {
  std::vector<std::string> terms = data::fulltext::DistinctTerms(name);
  std::erase_if(terms, [](const std::string& t) {
    return t == "srl" || t == "srls" || t == "spa" || t == "snc" || t == "sas";
  });
  std::sort(terms.begin(), terms.end());
  std::string key;
  for (const std::string& t : terms) key += t + " ";
  return key;
}

}  // namespace

std::vector<Party> GenerateParties(std::size_t count, const GeneratorOptions& options) {
  Random r(options.seed);
  std::vector<Party> out;
  out.reserve(count);
  std::int32_t id = options.firstId;
  std::unordered_set<std::string> names;
  while (out.size() < count) {
    bool duplicate = !out.empty() && r.Chance(options.duplicateShare);
    if (duplicate) {
      // Duplicate a recent original, so pairs spread over the whole range.
      std::size_t back = 1 + r.Below(std::min<std::size_t>(out.size(), 50));
      const Party* source = &out[out.size() - back];
      if (source->duplicateOf != 0) continue;
      Party d = *source;
      d.id = id++;
      d.duplicateOf = source->id;
      std::tie(d.ragioneSociale, d.variant) = Rewrite(r, source->ragioneSociale);
      out.push_back(std::move(d));
    } else {
      Party p = Original(r, id, options);
      // Drawn again while the name is taken; a few hundred misses in a row
      // would mean the names are used up, and the name is kept.
      for (int attempt = 0; options.distinctNames && attempt < 500 && !names.insert(NameKey(p.ragioneSociale)).second;
           ++attempt)
        p = Original(r, id, options);
      ++id;
      out.push_back(std::move(p));
    }
  }
  return out;
}

void InsertParties(Connection& connection, const std::vector<Party>& parties, const std::string& table) {
  bool leads = table != "STDAnagrafiche";
  std::string sql = "INSERT INTO " + table +
                    " (IdAnagrafica, RagioneSociale, Indirizzo, Cap, Citta, Provincia, PartitaIva, CodiceFiscale, "
                    "Telefono, E_mail" +
                    (leads ? ")" : ", Cliente)") + " VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?" + (leads ? ")" : ", 1)");
  data::Backend& backend = connection.Backend();
  connection.BeginTrans();
  try {
    for (const Party& p : parties)
      backend.Run(sql, {Variant(p.id), Variant(p.ragioneSociale), Variant(p.indirizzo), Variant(p.cap),
                        Variant(p.citta), Variant(p.provincia), Variant(p.partitaIva), Variant(p.codiceFiscale),
                        Variant(p.telefono), Variant(p.email)});
    connection.CommitTrans();
  } catch (...) {
    connection.RollbackTrans();
    throw;
  }
}

}  // namespace corvina20::bench
