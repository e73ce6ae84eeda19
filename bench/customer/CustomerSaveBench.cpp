// The customer card's save as a clerk makes it: a new customer typed on the
// card (name, address, town, VAT number, fiscal code, currency, a bank row),
// then save: every check before the save in its order, the duplicate search
// over the register, the question for the ledger account answered Yes (the
// account opened), the party, customer and bank rows written in one
// transaction. The module is loaded by the host's loader on a HostSession, as
// `corvina` loads it; every dialog is answered Yes.
//
//   build-release/bin/customer_save_bench [--sizes=10000,1000000]
//
// Registers are generated once (PartyGenerator, seed 20, as the duplicate
// benchmark) into $CORVINA_BENCH_DIR (default build-release/bench-data) as
// customers-<n>.db and reused; each run works on a copy, so the saves of one
// run never change the next run's register. Reported per size: p50 and p99
// of one save in milliseconds over kSaves saves (after one warm-up save), the
// slowest, and the peak resident memory.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "BenchArgs.h"
#include "PartyGenerator.h"
#include "automation/Workspace.h"
#include "corvina20/Card.h"
#include "corvina20/Form.h"
#include "corvina20/HostParameters.h"
#include "corvina20/MervoStatus.h"
#include "corvina20/VxBody.h"
#include "data/Database.h"
#include "data/fulltext/FtsIndexes.h"
#include "data/schema/Schema.h"
#include "items/ModuleLoader.h"
#include "items/OpenedItem.h"
#include "session/HostSession.h"

namespace {

using corvina20::ConnectionPtr;
using corvina20::Variant;

constexpr int kSaves = 300;

double PeakMegabytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

std::string CacheDirectory() {
  const char* env = std::getenv("CORVINA_BENCH_DIR");
  return env && *env ? env : CORVINA_BENCH_CACHE;
}

// A valid Italian VAT number for `n`: seven digits, office 001, check digit.
std::string VatNumber(long n) {
  std::string base = std::to_string(9000000 + n % 1000000) + "001";
  int sum = 0;
  for (std::size_t i = 0; i < base.size(); ++i) {
    int d = base[i] - '0';
    if (i % 2 == 1) d = d * 2 > 9 ? d * 2 - 9 : d * 2;
    sum += d;
  }
  return base + std::to_string((10 - sum % 10) % 10);
}

void Generate(const std::string& path, std::size_t n) {
  std::fprintf(stderr, "customer_save_bench: generating %zu parties into %s\n", n, path.c_str());
  ConnectionPtr c = corvina20::OpenDatabase(path);
  corvina20::data::ApplySchema(*c, corvina20::DataDirectory() + "/schema");
  corvina20::bench::GeneratorOptions o;
  o.wideSurnames = true;
  o.distinctNames = true;
  corvina20::bench::InsertParties(*c, corvina20::bench::GenerateParties(n, o));
  corvina20::HostParameters params(c, corvina20::DateTime::FromParts(2025, 6, 30));
  const std::pair<const char*, const char*> settings[] = {
      {"Identificativo1", "RagioneSociale"}, {"Identificativo2", "PartitaIva"},
      {"Identificativo3", "CodiceFiscale"},  {"ModalitaRicercaAnagrafica", "30"},
      {"PrecisioneFullText", "0"},           {"VerificaParitaCitta", "0"},
      {"CreaAutomPC", "1"},                  {"CodContoClienti", "14.01"},
      {"MaskConto", "##.##.#######"},        {"AbilitaStoricoAnagrafiche", "1"}};
  for (const auto& [key, value] : settings) params.WriteParameter(key, Variant(std::string(value)));
  c->Execute("INSERT INTO STDPianoDeiConti (CodConto, Descrizione, TipoConto, TipoCliFor, MovCont) "
             "VALUES ('14.01', 'Clienti', 2, 1, 0)");
  corvina20::data::fulltext::EnsureFullTextIndexes(*c);
  c->ExecuteNative("ANALYZE");
}

void Save(benchmark::State& state) {
  const auto n = static_cast<std::size_t>(state.range(0));
  std::filesystem::create_directories(CacheDirectory());
  const std::string kept = CacheDirectory() + "/customers-" + std::to_string(n) + ".db";
  if (!std::filesystem::exists(kept)) Generate(kept, n);
  // An index of an older version is rebuilt once, in the kept register.
  corvina20::data::fulltext::EnsureFullTextIndexes(*corvina20::OpenDatabase(kept));
  // A copy per size: the module keeps its session (and so the connection) to
  // the end of the process, and a copy must not meet another's write-ahead log.
  const std::string path = CacheDirectory() + "/customers-run-" + std::to_string(n) + ".db";
  for (const char* suffix : {"", "-wal", "-shm"}) std::filesystem::remove(path + suffix);
  std::filesystem::copy_file(kept, path);

  ConnectionPtr db = corvina20::OpenDatabase(path);
  auto dialog = std::make_shared<corvina20::QueuedDialog>(corvina20::kAnswerYes);
  auto session = std::make_shared<corvina20::HostSession>(db, dialog);
  corvina20::LoadedModule loaded(CORVINA_BENCH_MODULE);
  corvina20::SessionPtr app = session;
  loaded.Module().Init(app);
  auto item = corvina20::OpenModuleItem(loaded.Module(), "card", "AnagraficaClienti", db);
  corvina20::Form& form = *item->GetForm();
  corvina20::Card& card = *item->card;
  auto type = [&](const char* control, const std::string& value) {
    form.FindControl(control)->Type(Variant(value));
  };
  auto& banks = dynamic_cast<corvina20::VxBody&>(*form.FindControl("bdyBancheCliente"));

  std::vector<double> ms;
  long i = 0;
  auto typeCustomer = [&] {
    ++i;
    card.New();
    type("txtRagioneSociale1", "Officine Meccaniche Brambilla " + std::to_string(i) + " S.r.l.");
    type("txtIndirizzo", "Via Valassina " + std::to_string(i));
    type("txtCitta", "Milano");
    type("cdoDivisa", "EUR");
    const std::string vat = VatNumber(i);
    type("txtPartitaIva", vat);
    type("cdoCodiceFiscale", vat);
    banks.AddRow({{"Descrizione", Variant("Banca di prova")}, {"CodicePaeseIBAN", Variant("IT")},
                  {"CheckDigitIBAN", Variant("60")}, {"CodiceCIN", Variant("X")},
                  {"CodAbi", Variant("05428")}, {"CodCab", Variant("11101")},
                  {"NumeroCc", Variant("123456")}, {"Default", Variant(true)}});
  };
  // One save before the timed ones: the connection's first full-text search
  // builds its in-memory mirror of the indexes (about a second at a million
  // parties), which a server does once at start, not per save.
  typeCustomer();
  if (!card.Save()) state.SkipWithError("the warm-up save was refused");
  for (auto _ : state) {
    typeCustomer();
    auto start = std::chrono::steady_clock::now();
    const bool saved = card.Save();
    ms.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
    if (!saved) state.SkipWithError("a save was refused");
  }
  std::sort(ms.begin(), ms.end());
  auto at = [&](double q) { return corvina20::bench::Percentile(ms, q); };
  state.counters["p50_ms"] = at(0.50);
  state.counters["p99_ms"] = at(0.99);
  state.counters["max_ms"] = ms.back();
  state.counters["peak_MB"] = PeakMegabytes();
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<char*> rest;
  std::vector<long> sizes = corvina20::bench::TakeSizes(argc, argv, {10000, 1000000}, rest);

  for (long n : sizes)
    benchmark::RegisterBenchmark("CustomerSave", Save)
        ->Arg(n)->Iterations(kSaves)->Unit(benchmark::kMillisecond);
  int count = static_cast<int>(rest.size());
  benchmark::Initialize(&count, rest.data());
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
