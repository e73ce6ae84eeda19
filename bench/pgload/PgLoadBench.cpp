// Many workstations saving new parties at the same time, as the cards save
// them: in one transaction, the key numbered max + 1 by the module's own
// query (NextFreeIdAnagrafica's), the party row and an address row (an
// IDENTITY key) written, then commit. Every client has its own connection
// and saves without pause for the given time. Reported per backend: saves
// acknowledged, errors, key collisions (errors naming a duplicate key),
// whether every acknowledged party is in the database under its name (and
// nothing else is), and the p50/p99 of a save in milliseconds.
//
//   build-release/bin/pgload_bench [--clients=50] [--seconds=60] [--backends=postgres,sqlite]
//
// With --search=N it times the duplicate search's FREETEXTTABLE instead, on
// N generated parties (PartyGenerator, seed 20) in each backend: 50 names of
// the register searched, p50/p99 in milliseconds, and whether both backends
// gave the same keys and ranks for every name.
//
//   build-release/bin/pgload_bench --search=20000
//
// PostgreSQL runs on a throw-away cluster (scripts/pg-test-cluster) in a
// temporary folder; SQLite on a file beside it. Both start from the schema
// without demo data.
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "BenchArgs.h"
#include "PartyGenerator.h"
#include "corvina20/Error.h"
#include "corvina20/Recordset.h"
#include "data/Database.h"

namespace {

using Clock = std::chrono::steady_clock;
using corvina20::Variant;

struct Options {
  int clients = 50;
  int seconds = 60;
  std::vector<std::string> backends{"postgres", "sqlite"};
  long search = 0;  // parties of the search mode; 0: the save load
};

struct Outcome {
  long saves = 0;
  long errors = 0;
  long collisions = 0;
  long missing = 0;  // acknowledged but absent, or under another name
  long extra = 0;    // present but never acknowledged
  double p50 = 0, p99 = 0;
  std::string firstError;
};

std::string Shell(const std::string& command) {
  std::string out;
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return out;
  char buffer[512];
  while (fgets(buffer, sizeof buffer, pipe) != nullptr) out += buffer;
  pclose(pipe);
  while (!out.empty() && (out.back() == '\n' || out.back() == ' ')) out.pop_back();
  return out;
}

Outcome Run(const std::string& location, const Options& options) {
  {
    auto db = corvina20::OpenDatabase(location);
    corvina20::InitDatabase(*db, false);
  }
  std::mutex mutex;
  std::vector<double> latencies;
  std::map<long, std::string> acknowledged;
  Outcome outcome;
  std::atomic<long> errors{0}, collisions{0};
  const auto deadline = Clock::now() + std::chrono::seconds(options.seconds);
  std::vector<std::thread> clients;
  for (int c = 0; c < options.clients; ++c)
    clients.emplace_back([&, c] {
      std::vector<double> mine;
      std::map<long, std::string> saved;
      auto db = corvina20::OpenDatabase(location);
      for (int n = 0; Clock::now() < deadline; ++n) {
        const std::string name = "Cliente " + std::to_string(c) + "-" + std::to_string(n);
        const auto start = Clock::now();
        try {
          db->BeginTrans();
          auto rs = db->OpenRecordset("SELECT Max(IdAnagrafica) as IdLibera FROM STDAnagrafiche");
          const Variant& top = rs->Fields("IdLibera").Value();
          const long id = top.IsNull() ? 1 : top.ToLong() + 1;
          db->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Cliente, DataInserimento) "
                      "VALUES (?, ?, 1, getdate())",
                      {Variant(static_cast<std::int32_t>(id)), Variant(name)});
          db->Execute("INSERT INTO STDAnagIndirizzi (IdAnagrafica, NrIndirizzo, Citta) VALUES (?, 1, 'Milano')",
                      {Variant(static_cast<std::int32_t>(id))});
          db->CommitTrans();
          mine.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
          saved[id] = name;
        } catch (const corvina20::Error& e) {
          ++errors;
          std::string text = e.Description();
          if (text.find("duplicate key") != std::string::npos || text.find("UNIQUE") != std::string::npos)
            ++collisions;
          std::lock_guard<std::mutex> lock(mutex);
          if (outcome.firstError.empty()) outcome.firstError = text.substr(0, 200);
          try {
            if (db->InTransaction()) db->RollbackTrans();
          } catch (...) {
          }
        }
      }
      std::lock_guard<std::mutex> lock(mutex);
      latencies.insert(latencies.end(), mine.begin(), mine.end());
      for (auto& [id, name] : saved)
        if (!acknowledged.emplace(id, name).second) ++outcome.missing;  // one key acknowledged twice
    });
  for (auto& t : clients) t.join();

  auto db = corvina20::OpenDatabase(location);
  auto rs = db->OpenRecordset("SELECT IdAnagrafica, RagioneSociale FROM STDAnagrafiche");
  std::map<long, std::string> present;
  for (; !rs->IsEOF(); rs->MoveNext())
    present[rs->Fields("IdAnagrafica").Value().ToLong()] = rs->Fields("RagioneSociale").Value().ToString();
  for (const auto& [id, name] : acknowledged) {
    auto it = present.find(id);
    if (it == present.end() || it->second != name) ++outcome.missing;
  }
  for (const auto& [id, name] : present)
    if (acknowledged.count(id) == 0) ++outcome.extra;
  std::sort(latencies.begin(), latencies.end());
  outcome.saves = static_cast<long>(latencies.size());
  outcome.errors = errors;
  outcome.collisions = collisions;
  if (!latencies.empty()) {
    outcome.p50 = corvina20::bench::Percentile(latencies, 0.50);
    outcome.p99 = corvina20::bench::Percentile(latencies, 0.99);
  }
  return outcome;
}

// The search mode: the rows of each searched name, and the timings.
struct Searched {
  std::vector<std::string> rows;  // per name: "key:rank key:rank …"
  double p50 = 0, p99 = 0, load = 0;
};

// 'text' as a T-SQL literal: FREETEXTTABLE takes its text as one.
std::string Literal(const std::string& text) {
  std::string out = "'";
  for (char c : text) {
    if (c == '\'') out += '\'';
    out += c;
  }
  return out + "'";
}

Searched Search(const std::string& location, const std::vector<corvina20::bench::Party>& parties) {
  Searched out;
  auto db = corvina20::OpenDatabase(location);
  corvina20::InitDatabase(*db, false);
  const auto loadStart = Clock::now();
  corvina20::bench::InsertParties(*db, parties, "STDAnagrafiche");
  out.load = std::chrono::duration<double>(Clock::now() - loadStart).count();
  std::vector<double> times;
  const std::size_t step = std::max<std::size_t>(1, parties.size() / 50);
  for (int pass = 0; pass < 2; ++pass)  // the first pass makes the mirror: not timed
    for (std::size_t i = 0; i < parties.size(); i += step) {
      const auto start = Clock::now();
      auto rs = db->OpenRecordset(
          "SELECT TOP 10 A.IdAnagrafica, t1.Rank FROM STDAnagrafiche A INNER JOIN FREETEXTtable(STDAnagrafiche, "
          "RagioneSociale, " + Literal(parties[i].ragioneSociale) + ") t1 On A.IdAnagrafica = [KEY] "
          "Where t1.Rank > 30 ORDER BY t1.Rank DESC, A.IdAnagrafica");
      std::string row;
      for (; !rs->IsEOF(); rs->MoveNext())
        row += rs->Fields(std::size_t{0}).Value().ToString() + ":" + rs->Fields(std::size_t{1}).Value().ToString() + " ";
      if (pass == 1) {
        times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
        out.rows.push_back(row);
      }
    }
  std::sort(times.begin(), times.end());
  out.p50 = corvina20::bench::Percentile(times, 0.50);
  out.p99 = corvina20::bench::Percentile(times, 0.99);
  return out;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  for (int i = 1; i < argc; ++i) {
    std::string a = argv[i];
    if (a.rfind("--clients=", 0) == 0) options.clients = std::stoi(a.substr(10));
    else if (a.rfind("--seconds=", 0) == 0) options.seconds = std::stoi(a.substr(10));
    else if (a.rfind("--search=", 0) == 0) options.search = std::stol(a.substr(9));
    else if (a.rfind("--backends=", 0) == 0) {
      options.backends.clear();
      std::string list = a.substr(11);
      for (std::size_t p = 0; p <= list.size();) {
        std::size_t q = std::min(list.find(',', p), list.size());
        options.backends.push_back(list.substr(p, q - p));
        p = q + 1;
      }
    } else {
      std::cerr << "uso: pgload_bench [--clients=50] [--seconds=60] [--backends=postgres,sqlite] [--search=N]\n";
      return 2;
    }
  }
  setenv("CORVINA_DATA_DIR", CORVINA_BENCH_DATA_DIR, 0);
  std::string folder = (std::filesystem::temp_directory_path() / ("corvina-pgload-" + std::to_string(getpid()))).string();
  if (options.search > 0) {
    const auto parties = corvina20::bench::GenerateParties(static_cast<std::size_t>(options.search));
    std::printf("FREETEXTTABLE on %ld parties, 50 names\n", options.search);
    std::printf("| backend | load s | p50 ms | p99 ms |\n|---|---|---|---|\n");
    std::vector<Searched> results;
    for (const std::string& backend : options.backends) {
      std::string location = backend == "postgres"
                                 ? Shell(std::string(CORVINA_BENCH_CLUSTER_SCRIPT) + " start " + folder + "/pg")
                                 : (std::filesystem::create_directories(folder), folder + "/search.db");
      results.push_back(Search(location, parties));
      if (backend == "postgres") Shell(std::string(CORVINA_BENCH_CLUSTER_SCRIPT) + " stop " + folder + "/pg");
      std::printf("| %s | %.1f | %.1f | %.1f |\n", backend.c_str(), results.back().load, results.back().p50,
                  results.back().p99);
    }
    int differing = 0;
    for (std::size_t i = 1; i < results.size(); ++i)
      for (std::size_t n = 0; n < results[0].rows.size(); ++n)
        if (results[i].rows[n] != results[0].rows[n]) ++differing;
    std::printf("names whose rows or ranks differ between the backends: %d\n", differing);
    std::filesystem::remove_all(folder);
    return differing == 0 ? 0 : 1;
  }
  std::printf("%d clients, %d s each backend\n", options.clients, options.seconds);
  std::printf("| backend | saves | saves/s | errors | key collisions | acknowledged missing | unacknowledged present | p50 ms | p99 ms |\n");
  std::printf("|---|---|---|---|---|---|---|---|---|\n");
  int status = 0;
  for (const std::string& backend : options.backends) {
    std::string location;
    if (backend == "postgres") {
      location = Shell(std::string(CORVINA_BENCH_CLUSTER_SCRIPT) + " start " + folder + "/pg");
      if (location.rfind("postgresql://", 0) != 0) {
        std::cerr << "cluster non avviato: " << location << "\n";
        return 1;
      }
    } else {
      std::filesystem::create_directories(folder);
      location = folder + "/load.db";
    }
    Outcome o;
    try {
      o = Run(location, options);
    } catch (const corvina20::Error& e) {
      std::cerr << backend << ": " << e.Description() << "\n";
      status = 1;
    }
    if (backend == "postgres") Shell(std::string(CORVINA_BENCH_CLUSTER_SCRIPT) + " stop " + folder + "/pg");
    std::printf("| %s | %ld | %.0f | %ld | %ld | %ld | %ld | %.1f | %.1f |\n", backend.c_str(), o.saves,
                static_cast<double>(o.saves) / options.seconds, o.errors, o.collisions, o.missing, o.extra, o.p50,
                o.p99);
    if (!o.firstError.empty()) std::printf("  first error: %s\n", o.firstError.c_str());
    if (o.errors != 0 || o.missing != 0 || o.extra != 0) status = 1;
  }
  std::filesystem::remove_all(folder);
  return status;
}
