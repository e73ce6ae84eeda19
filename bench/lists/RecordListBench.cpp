// The customer card's record list at the server, as the browser asks for it:
// the first page and a page in the middle of the register, by code and by
// name, a town searched, a column filter, a rare word (one party), a common
// word sorted by name, two letters no party holds (read without the index),
// and a VAT number that matches one party only. The module is loaded by the
// host's loader on a HostSession and the card opened as `corvina serve`
// opens it; each measure is one call of Card::List for a page of 50 rows
// (what the API's "list" action runs).
//
//   build-release/bin/record_list_bench [--sizes=10000,1000000]
//
// Registers are generated once (PartyGenerator, seed 20: every party a
// customer) into $CORVINA_BENCH_DIR (default <build>/bench-data) as
// lists-<n>.db and reused; LISTS_BENCH_DB=<location> measures one made
// already instead (on PostgreSQL: `corvina copy lists-1000000.db
// postgresql://…/lists`, then --sizes=1000000). Reported per case and size: p50 and p99 of one
// page in milliseconds over the iterations, and the rows it returned.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "BenchArgs.h"
#include "PartyGenerator.h"
#include "automation/Workspace.h"
#include "corvina20/Card.h"
#include "corvina20/MervoStatus.h"
#include "data/Database.h"
#include "data/schema/Schema.h"
#include "items/ModuleLoader.h"
#include "items/OpenedItem.h"
#include "session/HostSession.h"

namespace {

using corvina20::ConnectionPtr;
using corvina20::ListQuery;
using corvina20::Variant;

std::string CacheDirectory() {
  const char* env = std::getenv("CORVINA_BENCH_DIR");
  return env && *env ? env : CORVINA_BENCH_CACHE;
}

// One register per size, opened once with its customer card for every case.
struct Register {
  ConnectionPtr db;
  std::shared_ptr<corvina20::HostSession> session;
  std::unique_ptr<corvina20::LoadedModule> loaded;
  std::unique_ptr<corvina20::OpenedItem> item;
};

Register& Open(std::size_t n) {
  static std::map<std::size_t, Register> registers;
  auto found = registers.find(n);
  if (found != registers.end()) return found->second;
  // LISTS_BENCH_DB: a register already made, on either backend (a copy of
  // lists-N.db, `corvina copy`), for one size.
  const char* given = std::getenv("LISTS_BENCH_DB");
  std::filesystem::create_directories(CacheDirectory());
  const std::string path =
      given && *given ? std::string(given) : CacheDirectory() + "/lists-" + std::to_string(n) + ".db";
  if (!(given && *given) && !std::filesystem::exists(path)) {
    std::fprintf(stderr, "record_list_bench: generating %zu parties into %s\n", n, path.c_str());
    ConnectionPtr c = corvina20::OpenDatabase(path);
    corvina20::data::ApplySchema(*c, corvina20::DataDirectory() + "/schema");
    corvina20::bench::InsertParties(*c, corvina20::bench::GenerateParties(n));
    c->ExecuteNative("ANALYZE");
  }
  Register& r = registers[n];
  r.db = corvina20::OpenDatabase(path);
  corvina20::InitDatabase(*r.db, false);
  r.session = std::make_shared<corvina20::HostSession>(r.db, std::make_shared<corvina20::QueuedDialog>(6));
  r.loaded = std::make_unique<corvina20::LoadedModule>(CORVINA_BENCH_MODULE);
  corvina20::SessionPtr app = r.session;
  r.loaded->Module().Init(app);
  r.item = corvina20::OpenModuleItem(r.loaded->Module(), "card", "AnagraficaClienti", r.db);
  return r;
}

struct Case {
  const char* name;
  // The query and the cursor of the page asked, given the register's size.
  std::function<void(Register&, std::size_t n, ListQuery& q, std::vector<Variant>& after)> make;
};

std::vector<Variant> MiddleBy(Register& r, const std::string& column, std::size_t n) {
  auto rs = r.db->OpenRecordset("SELECT " + column + ", IdAnagrafica FROM STDAnagrafiche WHERE IdAnagrafica = ?",
                                {Variant(static_cast<std::int32_t>(n / 2))});
  return {rs->Fields(std::size_t{0}).Value(), rs->Fields(std::size_t{1}).Value()};
}

const std::vector<Case>& Cases() {
  static const std::vector<Case> cases = {
      {"FirstPageByCode", [](Register&, std::size_t, ListQuery&, std::vector<Variant>&) {}},
      {"MiddlePageByCode",
       [](Register& r, std::size_t n, ListQuery&, std::vector<Variant>& after) { after = MiddleBy(r, "IdAnagrafica", n); }},
      {"FirstPageByName", [](Register&, std::size_t, ListQuery& q, std::vector<Variant>&) { q.sortField = "RagioneSociale"; }},
      {"MiddlePageByName",
       [](Register& r, std::size_t n, ListQuery& q, std::vector<Variant>& after) {
         q.sortField = "RagioneSociale";
         after = MiddleBy(r, "RagioneSociale", n);
       }},
      {"SearchTownFirstPage", [](Register&, std::size_t, ListQuery& q, std::vector<Variant>&) { q.search = "Bologna"; }},
      {"FilterTownByName",
       [](Register&, std::size_t, ListQuery& q, std::vector<Variant>&) {
         q.sortField = "RagioneSociale";
         q.filters = {{"Citta", "Bologna"}};
       }},
      {"SearchRareWord",
       [](Register& r, std::size_t n, ListQuery& q, std::vector<Variant>&) {
         // A surname no generated party has, planted once in one name.
         r.db->Execute("UPDATE STDAnagrafiche SET RagioneSociale = 'Quercioli Trasporti Srl' WHERE IdAnagrafica = ?",
                       {Variant(static_cast<std::int32_t>(n / 3))});
         q.search = "quercioli";
       }},
      {"SearchCommonWordByName",
       [](Register&, std::size_t, ListQuery& q, std::vector<Variant>&) {
         q.sortField = "RagioneSociale";
         q.search = "trasporti";
       }},
      // Too short for the index: the register is read whole, as every
      // search was before it.
      {"SearchTwoLettersNone", [](Register&, std::size_t, ListQuery& q, std::vector<Variant>&) { q.search = "qx"; }},
      {"SearchOneVatNumber",
       [](Register& r, std::size_t n, ListQuery& q, std::vector<Variant>&) {
         auto rs = r.db->OpenRecordset("SELECT PartitaIva FROM STDAnagrafiche WHERE IdAnagrafica = ?",
                                       {Variant(static_cast<std::int32_t>(n - 10))});
         q.search = rs->Fields(std::size_t{0}).Value().ToString();
       }},
  };
  return cases;
}

void Page(benchmark::State& state, const Case& c) {
  const auto n = static_cast<std::size_t>(state.range(0));
  Register& r = Open(n);
  ListQuery q;
  std::vector<Variant> after;
  c.make(r, n, q, after);
  std::vector<double> ms;
  std::size_t rows = 0;
  for (auto _ : state) {
    auto start = std::chrono::steady_clock::now();
    corvina20::ListPage page = r.item->card->List(q, after, 50);
    ms.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
    rows = page.rows.size();
  }
  std::sort(ms.begin(), ms.end());
  auto at = [&](double q) { return corvina20::bench::Percentile(ms, q); };
  state.counters["p50_ms"] = at(0.50);
  state.counters["p99_ms"] = at(0.99);
  state.counters["rows"] = static_cast<double>(rows);
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<char*> rest;
  std::vector<long> sizes = corvina20::bench::TakeSizes(argc, argv, {10000, 1000000}, rest);

  for (long n : sizes)
    for (const Case& c : Cases())
      benchmark::RegisterBenchmark(c.name, [&c](benchmark::State& s) { Page(s, c); })
          ->Arg(n)->Iterations(20)->Unit(benchmark::kMillisecond);
  int count = static_cast<int>(rest.size());
  benchmark::Initialize(&count, rest.data());
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
