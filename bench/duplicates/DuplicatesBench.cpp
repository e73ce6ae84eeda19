// The duplicate search of one card as the party card runs it: the module
// (libvantor20, loaded by the host's module loader on a HostSession) runs
// CercaAnagraficaDoppia and then CercaAnagraficheSimili on the card's values,
// with the demo's settings (identifying fields RagioneSociale, PartitaIva,
// CodiceFiscale; mode 30; no city check). Against it, the floor: the bare FTS5
// MATCH queries of the full-text searches that card runs, with the same words
// on the same database (rowids only, native SQL, no ranking). And the
// precision and recall of the planted duplicates.
//
//   build-release/bin/duplicates_bench [--sizes=10000,100000,1000000] [--benchmark_filter=…]
//
// Registers are generated once (PartyGenerator, seed 20, sparse names,
// distinct names; leads a tenth of the parties, named unlike any party) and
// kept in $CORVINA_BENCH_DIR (default build-release/bench-data): the first
// run at a million parties takes a few minutes, later runs open the file.
// DUPLICATES_BENCH_CROWDED=1 uses the wide surname tail instead, whose
// syllable grid gives most surnames several others one letter away (the
// worst case for typo tolerance).
//
// Benchmarks, per size:
//   Card       one card per repetition (kCards cards sampled evenly over the
//              register, each with all its values): both searches
//   BareMatch  the same cards' bare MATCH queries
//   FirstCard  a card on a connection just opened, a few repetitions; its
//              counters process_first_ms and process_first_MB give what the
//              process's first card cost (it makes the full-text copies that
//              every connection of the process then shares)
//   Quality    the duplicate search on kQualityCards cards given only name
//              and town (as a party typed anew; the codes would find planted
//              duplicates by equality): precision and recall of the planted
//              duplicates, as counters
//   Variants   the duplicate search on originals typed again as a second
//              clerk would (kVariantCards per kind, name and town, as a new
//              party): an inflected form (singular for plural, -a for -e ...),
//              a form of the thesaurus ("&" for "e", "F.lli" for "Fratelli"),
//              a letter dropped from, or two letters swapped in, the name's
//              rarest word. Recall per kind, precision per kind and overall.
// Every benchmark reports peak_MB, the process's peak resident memory so far
// (getrusage): sizes run in increasing order, so each figure is its size's.
// DUPLICATES_BENCH_VERBOSE=1 prints each row Quality counts against precision.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstring>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "BenchArgs.h"
#include "PartyGenerator.h"
#include "cards/contact/DuplicateSearch.h"
#include "corvina20/Connection.h"
#include "corvina20/HostParameters.h"
#include "corvina20/MervoStatus.h"
#include "corvina20/Recordset.h"
#include "data/Backend.h"
#include "data/Database.h"
#include "data/fulltext/FtsIndexes.h"
#include "data/fulltext/FtsTokenizer.h"
#include "data/schema/Schema.h"
#include "items/ModuleLoader.h"
#include "session/Dialog.h"
#include "session/HostSession.h"

namespace {

using corvina20::Connection;
using corvina20::ConnectionPtr;
using corvina20::RecordsetPtr;
using corvina20::Variant;

constexpr int kCards = 400;         // timed cards per size
constexpr int kQualityCards = 200;  // planted duplicates scored, and as many originals
constexpr int kVariantCards = 100;  // originals typed again, per variant kind
constexpr int kThreshold = 30;      // ModalitaRicercaAnagrafica of the demo
constexpr const char* kParties = "STDAnagrafiche";
constexpr const char* kLeads = "CRMAnagrafiche";

double PeakMegabytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024.0;  // kilobytes on Linux
}

struct CardValues {
  std::int32_t id = 0;
  std::string name, name2, address, city, vat, code;
};

// The card's current values, as the card's recordset holds them.
RecordsetPtr Record(const CardValues& c) {
  const std::vector<std::pair<std::string, std::string>> values{
      {"RagioneSociale", c.name}, {"RagioneSociale2", c.name2}, {"Indirizzo", c.address},
      {"Citta", c.city},          {"PartitaIva", c.vat},        {"CodiceFiscale", c.code}};
  return corvina20::Recordset::CreateTextRow(values);
}

struct QualityCard {
  CardValues values;
  std::set<std::int32_t> truth;  // the other parties of its planted group
};

struct Register {
  std::size_t n = 0;
  std::string path;
  ConnectionPtr connection;
  std::shared_ptr<corvina20::ScriptedDialog> dialog;
  std::shared_ptr<corvina20::HostSession> session;
  std::unique_ptr<corvina20::LoadedModule> module;
  std::vector<CardValues> cards;
  std::vector<std::vector<std::pair<std::string, std::string>>> bare;  // per card: (sql, MATCH text)
  std::vector<QualityCard> quality;
  std::vector<std::pair<std::string, std::vector<QualityCard>>> variants;  // per kind
  int bareQueries = 0;  // over all cards
  double firstSearchMs = 0;   // the process's first card: it makes the full-text copies
  double firstSearchMB = 0;   // what the peak memory grew by meanwhile
};

std::string CacheDirectory() {
  const char* env = std::getenv("CORVINA_BENCH_DIR");
  return env && *env ? env : CORVINA_BENCH_CACHE;
}

bool Crowded() {
  const char* env = std::getenv("DUPLICATES_BENCH_CROWDED");
  return env && *env && std::string(env) != "0";
}

corvina20::bench::GeneratorOptions Options() {
  corvina20::bench::GeneratorOptions o;
  o.wideSurnames = true;
  o.distinctNames = true;
  o.sparseNames = !Crowded();
  return o;
}

void Fail(const std::string& why) {
  std::fprintf(stderr, "duplicates_bench: %s\n", why.c_str());
  std::exit(1);
}

// Generates the register into `path`: parties, leads, the planted pairs
// (BenchDuplicati), the demo's search settings, the indexes, ANALYZE.
void Generate(const std::string& path, std::size_t n) {
  std::fprintf(stderr, "duplicates_bench: generating %zu parties into %s\n", n, path.c_str());
  auto start = std::chrono::steady_clock::now();
  ConnectionPtr c = corvina20::OpenDatabase(path);
  corvina20::data::ApplySchema(*c, corvina20::DataDirectory() + "/schema");
  {
    // Parties and leads from one draw, so that a lead's name is no party's:
    // the first n are the parties, the originals after them the leads.
    std::vector<corvina20::bench::Party> all = corvina20::bench::GenerateParties(n + n / 8, Options());
    std::vector<corvina20::bench::Party> parties(all.begin(), all.begin() + static_cast<long>(n));
    std::vector<corvina20::bench::Party> leads;
    for (std::size_t i = n; i < all.size() && leads.size() < n / 10; ++i)
      if (all[i].duplicateOf == 0) {
        leads.push_back(all[i]);
        leads.back().id = static_cast<std::int32_t>(leads.size());
      }
    all.clear();
    corvina20::bench::InsertParties(*c, parties);
    corvina20::bench::InsertParties(*c, leads, kLeads);
    c->ExecuteNative("CREATE TABLE BenchDuplicati (IdAnagrafica INTEGER PRIMARY KEY, Originale INTEGER NOT NULL)");
    c->BeginTrans();
    for (const auto& p : parties)
      if (p.duplicateOf != 0)
        c->Backend().Run("INSERT INTO BenchDuplicati VALUES (?, ?)", {Variant(p.id), Variant(p.duplicateOf)});
    c->CommitTrans();
  }
  corvina20::HostParameters params(c, corvina20::DateTime::FromParts(2025, 6, 30));
  params.WriteParameter("Identificativo1", Variant(std::string("RagioneSociale")));
  params.WriteParameter("Identificativo2", Variant(std::string("PartitaIva")));
  params.WriteParameter("Identificativo3", Variant(std::string("CodiceFiscale")));
  params.WriteParameter("ModalitaRicercaAnagrafica", Variant(std::to_string(kThreshold)));
  params.WriteParameter("PrecisioneFullText", Variant(std::string("0")));
  params.WriteParameter("VerificaParitaCitta", Variant(std::string("0")));
  corvina20::data::fulltext::EnsureFullTextIndexes(*c);
  c->ExecuteNative("ANALYZE");
  double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  std::fprintf(stderr, "duplicates_bench: generated in %.0f s\n", seconds);
}

bool Usable(const std::string& path, std::size_t n) {
  if (!std::filesystem::exists(path)) return false;
  try {
    ConnectionPtr c = corvina20::OpenDatabase(path);
    auto rs = c->Backend().Run("SELECT (SELECT count(*) FROM STDAnagrafiche), (SELECT count(*) FROM BenchDuplicati)", {});
    return rs.rows[0][0].ToLong() == static_cast<std::int32_t>(n) && rs.rows[0][1].ToLong() > 0;
  } catch (const std::exception&) {
    return false;
  }
}

CardValues ReadCard(Connection& c, std::int32_t id) {
  auto rs = c.Backend().Run(
      "SELECT IdAnagrafica, RagioneSociale, RagioneSociale2, Indirizzo, Citta, PartitaIva, CodiceFiscale "
      "FROM STDAnagrafiche WHERE IdAnagrafica = ?",
      {Variant(id)});
  if (rs.rows.empty()) Fail("no party " + std::to_string(id));
  auto text = [&](int i) { return rs.rows[0][static_cast<std::size_t>(i)].IsNull() ? std::string() : rs.rows[0][static_cast<std::size_t>(i)].ToString(); };
  return {id, text(1), text(2), text(3), text(4), text(5), text(6)};
}

bool HasRows(Connection& c, const std::string& tsql) {
  RecordsetPtr rs = c.OpenRecordset(tsql);
  return !(rs->IsBOF() && rs->IsEOF());
}

// The searches, as the duplicates panel runs them. Returns the duplicate
// search's result (null when none).
RecordsetPtr RunCard(const CardValues& card, bool similar = true) {
  RecordsetPtr record = Record(card);
  std::vector<std::string> campi = vantor20::CampiIdentificativi();
  RecordsetPtr duplicates, alike;
  vantor20::CercaAnagraficaDoppia(record, duplicates, card.id, false, campi);
  if (similar) vantor20::CercaAnagraficheSimili(record, alike, card.id, false, campi);
  return duplicates;
}

// Which full-text queries the card runs (the module stops at the first query
// with rows), and the bare MATCH each one needs: the rows of the index that
// can reach the query's floor, 31 for duplicates and 15 for similar parties.
std::vector<std::pair<std::string, std::string>> BareQueries(Register& r, const CardValues& card, bool& found) {
  Connection& c = *r.connection;
  const std::string name = vantor20::TestoRicerca(Variant(card.name));
  const std::string city = vantor20::TestoRicerca(Variant(card.city));
  std::vector<std::pair<std::string, int>> run;  // (table, floor)
  bool exact = false;
  for (const auto& [field, value] : std::vector<std::pair<std::string, std::string>>{
           {"RagioneSociale", name}, {"PartitaIva", card.vat}, {"CodiceFiscale", card.code}}) {
    std::string v = vantor20::TestoRicerca(Variant(value));
    if (v.empty() || exact) continue;
    exact = !c.Backend().Run("SELECT 1 FROM STDAnagrafiche WHERE " + field +
                                 " = ? AND IdAnagrafica <> ? AND Cliente = 1 LIMIT 1",
                             {Variant(v), Variant(card.id)})
                 .rows.empty();
  }
  found = exact;
  if (!exact && !name.empty()) {
    run.push_back({kParties, kThreshold + 1});
    found = HasRows(c, vantor20::DuplicatePartySql(kParties, "RagioneSociale", name, city, false, kThreshold, card.id));
    if (!found) {
      run.push_back({kLeads, kThreshold + 1});
      found = HasRows(c, vantor20::DuplicateLeadSql(kLeads, "RagioneSociale", name, city, false, kThreshold));
    }
  }
  if (!name.empty()) {
    run.push_back({kParties, 15});
    if (!HasRows(c, vantor20::SimilarPartySql(kParties, "RagioneSociale", name, city, false, kThreshold, card.id,
                                              false)))
      run.push_back({kLeads, 15});
  }
  std::vector<std::pair<std::string, std::string>> out;
  for (const auto& [table, floor] : run) {
    auto rs = c.Backend().Run("SELECT corvina_ft_match(?, 'RagioneSociale', ?, ?)",
                              {Variant(table), Variant(name), Variant(floor)});
    std::string index = "\"CORft_" + table + "_RagioneSociale\"";
    out.push_back({"SELECT rowid FROM " + index + " WHERE " + index + " MATCH ?", rs.rows[0][0].ToString()});
  }
  return out;
}

// --- names typed again ----------------------------------------------------------

std::vector<std::string> Words(const std::string& name) {
  std::vector<std::string> out;
  std::stringstream in(name);
  for (std::string w; in >> w;) out.push_back(w);
  return out;
}

std::string JoinWords(const std::vector<std::string>& words) {
  std::string out;
  for (const std::string& w : words) out += (out.empty() ? "" : " ") + w;
  return out;
}

bool PlainWord(const std::string& w, std::size_t least) {
  return w.size() >= least && std::all_of(w.begin(), w.end(), [](char c) { return std::isalpha(static_cast<unsigned char>(c)); });
}

// The name's trade in the singular, as a clerk may write it: "Trasporti"
// "Trasporto", "Ceramiche" "Ceramica", "Costruzioni" "Costruzione",
// "Serramenti" "Serramento". Only the generator's trades in the plural are
// changed ("Immobiliare" is an adjective, "Rossi" a surname).
std::string Inflected(const std::string& name) {
  static const char* const kTrades[] = {
      "Trasporti", "Costruzioni", "Impianti",     "Ceramiche", "Serramenti", "Autotrasporti", "Arredamenti",
      "Verniciature", "Calzature", "Consulenze", "Minuterie", "Ricambi",   "Marmi",      "Metalli",
      "Servizi",   "Automazioni", "Stampi"};
  static const std::pair<const char*, const char*> kEndings[] = {
      {"zioni", "zione"}, {"che", "ca"}, {"ghi", "go"}, {"ure", "ura"}, {"enze", "enza"}, {"ie", "ia"}, {"i", "o"}};
  std::vector<std::string> words = Words(name);
  for (std::string& w : words) {
    if (std::find(std::begin(kTrades), std::end(kTrades), w) == std::end(kTrades)) continue;
    for (const auto& [from, to] : kEndings)
      if (w.ends_with(from)) {
        w = w.substr(0, w.size() - std::strlen(from)) + to;
        return JoinWords(words);
      }
  }
  return "";
}

// A form of the thesaurus written the other way: "&" "e", "F.lli" "Fratelli".
std::string OtherForm(const std::string& name) {
  std::vector<std::string> words = Words(name);
  bool changed = false;
  for (std::string& w : words) {
    if (w == "&") w = "e";
    else if (w == "F.lli") w = "Fratelli";
    else if (w == "Fratelli") w = "F.lli";
    else continue;
    changed = true;
  }
  return changed ? JoinWords(words) : "";
}

// One typo in the name's rarest word of five letters or more: its middle
// letter dropped (`swap` false) or swapped with the one before.
std::string Mistyped(Connection& c, const std::string& name, bool swap) {
  std::vector<std::string> words = Words(name);
  std::string* rarest = nullptr;
  long least = 0;
  for (std::string& w : words) {
    if (!PlainWord(w, 5)) continue;
    std::vector<std::string> terms = corvina20::data::fulltext::DistinctTerms(w);
    long df = c.Backend()
                  .Run("SELECT corvina_ft_frequency('STDAnagrafiche', 'RagioneSociale', ?)", {Variant(terms.at(0))})
                  .rows[0][0]
                  .ToLong();
    if (!rarest || df < least) {
      rarest = &w;
      least = df;
    }
  }
  if (!rarest) return "";
  std::string& w = *rarest;
  std::size_t at = w.size() / 2;
  if (!swap) {
    w.erase(at, 1);
  } else {
    if (std::tolower(static_cast<unsigned char>(w[at - 1])) == std::tolower(static_cast<unsigned char>(w[at]))) ++at;
    if (at + 1 >= w.size()) return "";
    std::swap(w[at - 1], w[at]);
  }
  return JoinWords(words);
}

std::unique_ptr<Register> g_register;

void Bind(Register& r) {
  r.session = std::make_shared<corvina20::HostSession>(r.connection, r.dialog);
  r.module = std::make_unique<corvina20::LoadedModule>(CORVINA_BENCH_MODULE);
  corvina20::SessionPtr app = r.session;
  r.module->Module().Init(app);
}

Register& RegisterOf(std::size_t n) {
  if (g_register && g_register->n == n) return *g_register;
  g_register.reset();  // one register at a time: peak memory stays its own
  auto r = std::make_unique<Register>();
  r->n = n;
  std::filesystem::create_directories(CacheDirectory());
  r->path = CacheDirectory() + (Crowded() ? "/duplicates-crowded-" : "/duplicates-sparse-") + std::to_string(n) + ".db";
  if (!Usable(r->path, n)) {
    std::filesystem::remove(r->path);
    std::filesystem::remove(r->path + "-wal");
    std::filesystem::remove(r->path + "-shm");
    Generate(r->path, n);
  }
  r->connection = corvina20::OpenDatabase(r->path);
  // Indexes of an older version are rebuilt (once), as InitDatabase would.
  if (corvina20::data::fulltext::EnsureFullTextIndexes(*r->connection) > 0) r->connection->ExecuteNative("ANALYZE");
  r->dialog = std::make_shared<corvina20::ScriptedDialog>();
  Bind(*r);
  Connection& c = *r->connection;

  // Timed cards: evenly over the register, all their values.
  for (int i = 0; i < kCards; ++i) {
    auto id = static_cast<std::int32_t>(static_cast<std::size_t>(i) * n / kCards + 7 % (n / kCards) + 1);
    r->cards.push_back(ReadCard(c, id));
  }
  // Which queries each card runs, checked against the module's own answer
  // (this also warms the caches, as a connection's earlier cards would).
  // The first card of the process makes the copies of the indexes it
  // searches, which every later connection of the process shares.
  {
    double before = PeakMegabytes();
    auto start = std::chrono::steady_clock::now();
    RunCard(r->cards.front());
    r->firstSearchMs = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    r->firstSearchMB = PeakMegabytes() - before;
  }
  for (const CardValues& card : r->cards) {
    bool found = false;
    r->bare.push_back(BareQueries(*r, card, found));
    r->bareQueries += static_cast<int>(r->bare.back().size());
    if ((RunCard(card) != nullptr) != found) Fail("the module and the bench disagree on card " + std::to_string(card.id));
  }

  // Scored cards: planted duplicates and originals, evenly, name and town only.
  std::map<std::int32_t, std::int32_t> originalOf;
  std::map<std::int32_t, std::vector<std::int32_t>> group;
  for (const auto& row : c.Backend().Run("SELECT IdAnagrafica, Originale FROM BenchDuplicati ORDER BY 1", {}).rows) {
    originalOf[row[0].ToLong()] = row[1].ToLong();
    group[row[1].ToLong()].push_back(row[0].ToLong());
  }
  std::vector<std::int32_t> planted;
  for (const auto& [id, original] : originalOf) planted.push_back(id);
  auto addQuality = [&](std::int32_t id) {
    CardValues v = ReadCard(c, id);
    QualityCard q;
    q.values.id = id;
    q.values.name = v.name;
    q.values.city = v.city;
    std::int32_t original = originalOf.count(id) ? originalOf[id] : id;
    q.truth.insert(original);
    for (std::int32_t d : group[original]) q.truth.insert(d);
    q.truth.erase(id);
    r->quality.push_back(std::move(q));
  };
  for (int i = 0; i < kQualityCards; ++i) addQuality(planted[static_cast<std::size_t>(i) * planted.size() / kQualityCards]);
  for (int i = 0; i < kQualityCards; ++i) {
    auto id = static_cast<std::int32_t>(static_cast<std::size_t>(i) * n / kQualityCards + 3);
    while (originalOf.count(id)) ++id;
    addQuality(id);
  }

  // Variant cards: originals evenly over the register, each kind from the
  // first original at or after its place that the kind applies to.
  std::vector<std::pair<std::string, std::function<std::string(const std::string&)>>> kinds{
      {"inflection", Inflected},
      {"thesaurus", OtherForm},
      {"dropped", [&](const std::string& name) { return Mistyped(c, name, false); }},
      {"swapped", [&](const std::string& name) { return Mistyped(c, name, true); }}};
  for (const auto& [kind, rewrite] : kinds) {
    std::vector<QualityCard> cards;
    std::set<std::int32_t> used;
    for (int i = 0; i < kVariantCards; ++i) {
      auto id = static_cast<std::int32_t>(static_cast<std::size_t>(i) * n / kVariantCards + 11);
      for (; id <= static_cast<std::int32_t>(n); ++id) {
        if (originalOf.count(id) || used.count(id)) continue;
        CardValues v = ReadCard(c, id);
        std::string typed = rewrite(v.name);
        if (typed.empty() || typed == v.name) continue;
        QualityCard q;
        q.values.name = typed;  // a new party: no id
        q.values.city = v.city;
        q.truth.insert(id);
        for (std::int32_t d : group[id]) q.truth.insert(d);
        cards.push_back(std::move(q));
        used.insert(id);
        break;
      }
    }
    r->variants.push_back({kind, std::move(cards)});
  }
  if (!r->dialog->Problems().empty()) Fail("the module showed: " + r->dialog->Problems());
  g_register = std::move(r);
  return *g_register;
}

// One card per repetition, cycling through the sample.
template <class F>
void PerCard(benchmark::State& state, F&& run) {
  Register& r = RegisterOf(static_cast<std::size_t>(state.range(0)));
  static std::size_t i = 0;  // one counter per benchmark (F is its own lambda)
  for (auto _ : state) {
    std::size_t card = i++ % r.cards.size();
    run(r, card);
  }
  if (!r.dialog->Problems().empty()) state.SkipWithError(r.dialog->Problems().c_str());
  state.counters["peak_MB"] = PeakMegabytes();
}

void Card(benchmark::State& state) {
  PerCard(state, [](Register& r, std::size_t i) { benchmark::DoNotOptimize(RunCard(r.cards[i])); });
}

void BareMatch(benchmark::State& state) {
  PerCard(state, [](Register& r, std::size_t i) {
    std::size_t rows = 0;
    for (const auto& [sql, match] : r.bare[i]) rows += r.connection->Backend().Run(sql, {Variant(match)}).rows.size();
    benchmark::DoNotOptimize(rows);
  });
}

// A card on a connection opened just before: the cost of a connection's first
// search. The register's own connection is bound again afterwards.
void FirstCard(benchmark::State& state) {
  Register& r = RegisterOf(static_cast<std::size_t>(state.range(0)));
  static std::size_t next = 0;
  for (auto _ : state) {
    state.PauseTiming();
    Register fresh;
    fresh.connection = corvina20::OpenDatabase(r.path);
    fresh.dialog = r.dialog;
    Bind(fresh);
    const CardValues& card = r.cards[(next++ * 37) % r.cards.size()];
    state.ResumeTiming();
    benchmark::DoNotOptimize(RunCard(card));
    state.PauseTiming();
    fresh.module.reset();
    fresh.session.reset();
    fresh.connection.reset();
    state.ResumeTiming();
  }
  Bind(r);
  state.counters["peak_MB"] = PeakMegabytes();
  state.counters["process_first_ms"] = r.firstSearchMs;
  state.counters["process_first_MB"] = r.firstSearchMB;
}

// What the duplicate search finds for scored cards: the planted rows found,
// the rows found that were not planted, the planted rows there were.
struct Score {
  double truePositives = 0, falsePositives = 0, relevant = 0, leads = 0;
  double Precision() const {
    return truePositives + falsePositives > 0 ? truePositives / (truePositives + falsePositives) : 1;
  }
  double Recall() const { return relevant > 0 ? truePositives / relevant : 1; }
};

Score ScoreCards(const std::vector<QualityCard>& cards) {
  Score s;
  for (const QualityCard& q : cards) {
    RecordsetPtr rs = RunCard(q.values, false);
    s.relevant += static_cast<double>(q.truth.size());
    if (!rs) continue;
    for (rs->MoveFirst(); !rs->IsEOF(); rs->MoveNext()) {
      const Variant& kind = rs->Fields("TipoAnag").Value();
      bool lead = kind.Kind() != corvina20::VariantKind::Boolean && kind.ToLong() == 2;
      if (lead) ++s.leads;
      if (!lead && q.truth.count(rs->Fields("IdAnagrafica").Value().ToLong())) {
        ++s.truePositives;
      } else {
        ++s.falsePositives;
        if (std::getenv("DUPLICATES_BENCH_VERBOSE"))
          std::fprintf(stderr, "not planted: %s | %s (%s, rank %s)\n", q.values.name.c_str(),
                       rs->Fields("RagioneSociale").Value().ToString().c_str(), lead ? "lead" : "party",
                       rs->Fields("Rank").Value().ToString().c_str());
      }
    }
  }
  return s;
}

void Quality(benchmark::State& state) {
  Register& r = RegisterOf(static_cast<std::size_t>(state.range(0)));
  Score s;
  for (auto _ : state) s = ScoreCards(r.quality);
  state.counters["precision"] = s.Precision();
  state.counters["recall"] = s.Recall();
  state.counters["found"] = s.truePositives + s.falsePositives;
  state.counters["planted"] = s.relevant;
  state.counters["leads"] = s.leads;
  state.counters["bare_queries_per_card"] = static_cast<double>(r.bareQueries) / static_cast<double>(r.cards.size());
  state.counters["peak_MB"] = PeakMegabytes();
  if (!r.dialog->Problems().empty()) state.SkipWithError(r.dialog->Problems().c_str());
}

void Variants(benchmark::State& state) {
  Register& r = RegisterOf(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    Score all;
    for (const auto& [kind, cards] : r.variants) {
      Score s = ScoreCards(cards);
      state.counters[kind + "_recall"] = s.Recall();
      state.counters[kind + "_precision"] = s.Precision();
      state.counters[kind + "_cards"] = static_cast<double>(cards.size());
      all.truePositives += s.truePositives;
      all.falsePositives += s.falsePositives;
      all.relevant += s.relevant;
    }
    state.counters["precision"] = all.Precision();
    state.counters["recall"] = all.Recall();
  }
  state.counters["peak_MB"] = PeakMegabytes();
  if (!r.dialog->Problems().empty()) state.SkipWithError(r.dialog->Problems().c_str());
}

double Percentile(const std::vector<double>& v, double p) {
  std::vector<double> s = v;
  std::sort(s.begin(), s.end());
  return s.empty() ? 0 : s[static_cast<std::size_t>(p * static_cast<double>(s.size() - 1) + 0.5)];
}

void PerCardStatistics(benchmark::internal::Benchmark* b, int repetitions) {
  b->ArgName("n")->Iterations(1)->Repetitions(repetitions)->ReportAggregatesOnly(true)
      ->ComputeStatistics("p50", [](const std::vector<double>& v) { return Percentile(v, 0.5); })
      ->ComputeStatistics("p99", [](const std::vector<double>& v) { return Percentile(v, 0.99); })
      ->Unit(benchmark::kMillisecond);
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<char*> args;
  std::vector<long> sizes = corvina20::bench::TakeSizes(argc, argv, {10000, 100000, 1000000}, args);

  setenv("CORVINA_DATA_DIR", CORVINA_BENCH_DATA_DIR, 0);
  std::sort(sizes.begin(), sizes.end());
  // Size by size, so that one register is open at a time.
  for (std::size_t n : sizes) {
    auto arg = static_cast<std::int64_t>(n);
    PerCardStatistics(benchmark::RegisterBenchmark("Card", Card)->Arg(arg), kCards);
    PerCardStatistics(benchmark::RegisterBenchmark("BareMatch", BareMatch)->Arg(arg), kCards);
    PerCardStatistics(benchmark::RegisterBenchmark("FirstCard", FirstCard)->Arg(arg), 5);
    benchmark::RegisterBenchmark("Quality", Quality)->Arg(arg)->ArgName("n")->Iterations(1)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("Variants", Variants)->Arg(arg)->ArgName("n")->Iterations(1)->Unit(benchmark::kMillisecond);
  }
  int count = static_cast<int>(args.size());
  benchmark::Initialize(&count, args.data());
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  g_register.reset();
  return 0;
}
