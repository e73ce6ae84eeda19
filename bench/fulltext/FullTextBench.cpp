// FREETEXTTABLE on registers of generated parties (10k and 100k; 1M with
// --n=1000000): the duplicate and similar searches a card runs on save, as
// the module writes them, against the bare FTS5 MATCH queries they need and
// against a naive OR query that ranks every matching row. Each repetition is
// one card (one sampled party), so the median and p90 are across parties.
//   build-release/bin/fulltext_bench [--n=N] [--benchmark_filter=…]
// Databases are kept in $CORVINA_BENCH_DIR (default build-release/bench-data)
// and reused when they hold the expected number of parties (their indexes
// brought to the current version first).
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "PartyGenerator.h"
#include "corvina20/Connection.h"
#include "corvina20/MervoStatus.h"
#include "data/Backend.h"
#include "data/Database.h"
#include "data/fulltext/FtsIndexes.h"
#include "data/schema/Schema.h"

namespace {

using corvina20::Connection;
using corvina20::ConnectionPtr;
using corvina20::Variant;
using corvina20::bench::Party;

constexpr int kSample = 200;     // cards per benchmark
constexpr int kThreshold = 30;   // PrecisioneFullText of the demo

std::string Prepared(std::string text) {
  for (char& c : text)
    if (c == '\'') c = ' ';
  return text;
}

struct Card {
  std::int32_t id;
  std::string name;
  std::string city;
};

// The module's four queries for the field RagioneSociale: duplicate party and
// lead, similar party and lead; with the city match when `city` is set.
std::vector<std::string> CardQueries(const Card& c, bool city) {
  const std::string t = std::to_string(kThreshold);
  const std::string id = std::to_string(c.id);
  auto cityJoin = [&](const std::string& table) {
    return city ? " inner join FREETEXTtable(" + table + ", Citta,'" + c.city + "') t2 On T.IdAnagrafica = t2.[KEY] "
                : std::string();
  };
  const std::string cityRank = city ? "and t2.Rank > 50 " : "";
  return {
      "SELECT Rank = t1.Rank, T.IdAnagrafica,RagioneSociale,RagioneSociale2,Indirizzo,Citta,TipoAnag = "
      "isnull(Cliente,0) from STDAnagrafiche T inner join FREETEXTtable(STDAnagrafiche,RagioneSociale,'" +
          c.name + "') t1 On T.IdAnagrafica = [KEY] " + cityJoin("STDAnagrafiche") + "Where t1.Rank > " + t + " " +
          cityRank + "and T.IdAnagrafica <> " + id + " order by t1.Rank desc",
      "SELECT Rank = t1.Rank, T.IdAnagrafica,RagioneSociale,RagioneSociale2,Indirizzo,Citta,TipoAnag = 2 from "
      "CRMAnagrafiche T inner join FREETEXTtable(CRMAnagrafiche,RagioneSociale,'" +
          c.name + "') t1 On T.IdAnagrafica = [KEY] " + cityJoin("CRMAnagrafiche") + "Where t1.Rank > " + t + " " +
          cityRank + "order by t1.Rank desc",
      "SELECT TOP 10 Rank = t1.rank,T.IdAnagrafica,T.RagioneSociale,T.RagioneSociale2,T.Indirizzo,T.Citta,"
      "TipoAnag = isnull(T.Contatto,0) from STDAnagrafiche T inner join FREETEXTtable(STDAnagrafiche,RagioneSociale,'" +
          c.name + "') t1 On T.IdAnagrafica = t1.[KEY] " + cityJoin("STDAnagrafiche") + "Where t1.Rank >= 15 and t1.Rank <= " +
          t + " " + cityRank + "And T.IdAnagrafica <> " + id + " And isNull(T.Fornitore,0) <> 1 order by t1.Rank desc",
      "SELECT TOP 10 Rank = t1.rank,T.IdAnagrafica,T.RagioneSociale,T.RagioneSociale2,T.Indirizzo,T.Citta,"
      "TipoAnag = 2 from CRMAnagrafiche T inner join FREETEXTtable(CRMAnagrafiche,RagioneSociale,'" +
          c.name + "') t1 On T.IdAnagrafica = t1.[KEY] " + cityJoin("CRMAnagrafiche") + "Where t1.Rank >= 15 and t1.Rank <= " +
          t + " " + cityRank + "order by t1.Rank desc"};
}

struct Register {
  ConnectionPtr connection;
  std::vector<Card> cards;
  // Per card: the bare MATCH queries its FREETEXTTABLEs run, with city and
  // without; and the naive OR of all its words per name search.
  std::vector<std::vector<std::string>> bare, bareNoCity, naive;
};

std::string FtsQuery(Connection& c, const std::string& table, const std::string& column, const std::string& text,
                     int minRank) {
  auto rs = c.Backend().Run("SELECT corvina_ft_match(?, ?, ?, ?)",
                            {Variant(table), Variant(column), Variant(text), Variant(minRank)});
  return rs.rows[0][0].ToString();
}

std::string Quoted(const std::string& s) {
  std::string out;
  for (char ch : s) out += ch == '\'' ? std::string("''") : std::string(1, ch);
  return "'" + out + "'";
}

Register& RegisterOf(std::size_t n) {
  static std::map<std::size_t, std::unique_ptr<Register>> registers;
  auto& slot = registers[n];
  if (slot) return *slot;
  slot = std::make_unique<Register>();
  Register& r = *slot;

  const char* env = std::getenv("CORVINA_BENCH_DIR");
  std::filesystem::path dir = env && *env ? env : CORVINA_BENCH_CACHE;
  std::filesystem::create_directories(dir);
  std::string path = (dir / ("fulltext-" + std::to_string(n) + ".db")).string();
  corvina20::bench::GeneratorOptions options;
  std::vector<Party> parties = corvina20::bench::GenerateParties(n, options);

  bool fresh = !std::filesystem::exists(path);
  r.connection = corvina20::OpenDatabase(path);
  Connection& c = *r.connection;
  if (!fresh) {
    auto rs = c.Backend().Run("SELECT count(*) FROM STDAnagrafiche", {});
    if (rs.rows[0][0].ToLong() != static_cast<std::int32_t>(n)) {
      r.connection.reset();
      std::filesystem::remove(path);
      fresh = true;
      r.connection = corvina20::OpenDatabase(path);
    }
  }
  if (fresh) {
    // Rows first, indexes after: building an index from the rows is faster
    // than keeping it row by row.
    corvina20::data::ApplySchema(*r.connection, corvina20::DataDirectory() + "/schema");
    corvina20::bench::InsertParties(*r.connection, parties);
    corvina20::bench::GeneratorOptions leads;
    leads.seed = 99;
    corvina20::bench::InsertParties(*r.connection, corvina20::bench::GenerateParties(n / 10, leads), "CRMAnagrafiche");
    corvina20::data::fulltext::EnsureFullTextIndexes(*r.connection);
    r.connection->ExecuteNative("ANALYZE");
  }
  if (!fresh && corvina20::data::fulltext::EnsureFullTextIndexes(*r.connection) > 0)
    r.connection->ExecuteNative("ANALYZE");
  Connection& db = *r.connection;
  for (int i = 0; i < kSample; ++i) {
    const Party& p = parties[static_cast<std::size_t>(i) * n / kSample + 7 % (n / kSample)];
    Card card{p.id, Prepared(p.ragioneSociale), Prepared(p.citta)};
    std::vector<std::string> bare, bareNoCity, naive;
    for (const char* table : {"STDAnagrafiche", "CRMAnagrafiche"}) {
      std::string index = std::string("CORft_") + table;
      for (int floor : {kThreshold + 1, 15}) {
        std::string q = "SELECT rowid FROM " + index + "_RagioneSociale WHERE " + index + "_RagioneSociale MATCH " +
                        Quoted(FtsQuery(db, table, "RagioneSociale", card.name, floor));
        bare.push_back(q);
        bareNoCity.push_back(q);
        bare.push_back("SELECT rowid FROM " + index + "_Citta WHERE " + index + "_Citta MATCH " +
                       Quoted(FtsQuery(db, table, "Citta", card.city, 51)));
      }
      std::string all = FtsQuery(db, table, "RagioneSociale", card.name, 0);
      naive.push_back("SELECT count(*) FROM (SELECT corvina_ft_rank('" + std::string(table) + "', 'RagioneSociale', " +
                      Quoted(card.name) + ", RagioneSociale) AS r FROM " + index + "_RagioneSociale WHERE " + index +
                      "_RagioneSociale MATCH " + Quoted(all) + ") WHERE r > " + std::to_string(kThreshold));
    }
    r.cards.push_back(card);
    r.bare.push_back(bare);
    r.bareNoCity.push_back(bareNoCity);
    r.naive.push_back(naive);
  }
  return r;
}

std::size_t g_large = 100000;

// n:10000, and n:0 for the size given by --n (100000 by default).
std::size_t SizeOf(const benchmark::State& state) {
  return state.range(0) == 0 ? g_large : static_cast<std::size_t>(state.range(0));
}

// One card per repetition, cycling through the sample.
template <class F>
void PerCard(benchmark::State& state, F&& run) {
  static std::size_t i = 0;  // one counter per benchmark (F is its own lambda)
  Register& r = RegisterOf(SizeOf(state));
  for (auto _ : state) {
    std::size_t card = i++ % r.cards.size();
    benchmark::DoNotOptimize(run(r, card));
  }
  state.SetLabel(std::to_string(SizeOf(state)) + " parties");
}

long RunTsql(Connection& c, const std::vector<std::string>& queries) {
  long rows = 0;
  for (const std::string& q : queries) rows += c.OpenRecordset(q)->RecordCount();
  return rows;
}

long RunNative(Connection& c, const std::vector<std::string>& queries) {
  long rows = 0;
  for (const std::string& q : queries) rows += static_cast<long>(c.Backend().Run(q, {}).rows.size());
  return rows;
}

void CardWithCity(benchmark::State& state) {
  PerCard(state, [](Register& r, std::size_t i) { return RunTsql(*r.connection, CardQueries(r.cards[i], true)); });
}
void CardWithoutCity(benchmark::State& state) {
  PerCard(state, [](Register& r, std::size_t i) { return RunTsql(*r.connection, CardQueries(r.cards[i], false)); });
}
void BareMatchesWithCity(benchmark::State& state) {
  PerCard(state, [](Register& r, std::size_t i) { return RunNative(*r.connection, r.bare[i]); });
}
void BareMatchesWithoutCity(benchmark::State& state) {
  PerCard(state, [](Register& r, std::size_t i) { return RunNative(*r.connection, r.bareNoCity[i]); });
}
void NaiveOrRanked(benchmark::State& state) {
  PerCard(state, [](Register& r, std::size_t i) { return RunNative(*r.connection, r.naive[i]); });
}

double Percentile(const std::vector<double>& v, double p) {
  std::vector<double> s = v;
  std::sort(s.begin(), s.end());
  return s.empty() ? 0 : s[static_cast<std::size_t>(p * static_cast<double>(s.size() - 1))];
}

void Configure(benchmark::internal::Benchmark* b) {
  b->Arg(10000)->Arg(0)->ArgName("n")->Iterations(1)->Repetitions(kSample)->ReportAggregatesOnly(true)
      ->ComputeStatistics("p50", [](const std::vector<double>& v) { return Percentile(v, 0.5); })
      ->ComputeStatistics("p90", [](const std::vector<double>& v) { return Percentile(v, 0.9); })
      ->Unit(benchmark::kMillisecond);
}

BENCHMARK(CardWithoutCity)->Apply(Configure);
BENCHMARK(BareMatchesWithoutCity)->Apply(Configure);
BENCHMARK(CardWithCity)->Apply(Configure);
BENCHMARK(BareMatchesWithCity)->Apply(Configure);
BENCHMARK(NaiveOrRanked)->Apply(Configure);

}  // namespace

int main(int argc, char** argv) {
  std::vector<char*> args;
  for (int i = 0; i < argc; ++i) {
    std::string a = argv[i];
    if (a.rfind("--n=", 0) == 0) g_large = std::stoul(a.substr(4));
    else args.push_back(argv[i]);
  }
  setenv("CORVINA_DATA_DIR", CORVINA_BENCH_DATA_DIR, 0);
  int count = static_cast<int>(args.size());
  benchmark::Initialize(&count, args.data());
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
