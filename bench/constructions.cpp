// Transfer functions beside a dense state-space generation, and saves of walls beside generation and storage by hand.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>

#include "envelope/ctf_generator.h"
#include "plain_project.h"
#include "project/new_index.h"
#include "report.h"
#include "storage/kind.h"
#include "tarn/construction.h"
#include "tarn/platform/database.h"
#include "tarn/platform/workspace.h"

namespace tarn::bench {
namespace {

constexpr int kWalls = 1000;
constexpr size_t kNodes = 12;  // of a layer, in the state-space generation
constexpr size_t kTerms = 12;

struct Layer {
  float inches, conductivity, density, specific_heat, resistance;
};
constexpr Layer kBrick{4, 0.514F, 119.9F, 0.189F, 0}, kConcrete{8, 1.127F, 139.8F, 0.215F, 0},
    kInsulation{3, 0.0173F, 2.68F, 0.289F, 0}, kGypsum{0.626F, 0.0924F, 49.9F, 0.26F, 0},
    kStucco{1, 0.416F, 115.9F, 0.2F, 0}, kOutside{0, 0, 0, 0, 0.333F}, kInside{0, 0, 0, 0, 0.685F};

/// Ordinary walls in turn: a light, a medium, a heavy and an insulated one; the number moves the thickness a little.
std::vector<Layer> sample_wall(int number) {
  constexpr float kStep = 0.002F;
  std::vector<Layer> layers{kOutside, kBrick, kInsulation, kGypsum, kInside};
  if (number % 4 == 1) layers = {kOutside, kStucco, kInsulation, kConcrete, kGypsum, kInside};
  if (number % 4 == 2) layers = {kConcrete, kInsulation, kConcrete};
  if (number % 4 == 3) layers = {kOutside, kStucco, kInsulation, kGypsum, kInside};
  for (Layer& layer : layers) layer.inches *= 1 + kStep * static_cast<float>(number % 100);
  return layers;
}

/// Ten layers, eight of them with mass.
std::vector<Layer> ten_layer_wall(int number) {
  std::vector<Layer> layers{kOutside, kStucco,     kBrick, kInsulation, kConcrete,
                            kGypsum,  kInsulation, kBrick, kGypsum,     kInside};
  layers[2].inches += 0.01F * static_cast<float>(number % 100);
  return layers;
}

/// Five leaves of concrete around R-50, whose roots lie close together.
std::vector<Layer> clustered_wall(int number) {
  constexpr Layer kAround{0, 0, 0, 0, 50};
  Layer leaf = kConcrete;
  leaf.inches = 4 + 0.001F * static_cast<float>(number % 100);
  return {leaf, kAround, leaf, kAround, leaf, kAround, leaf, kAround, leaf};
}

float generate(const std::vector<Layer>& layers) {
  CTFCG generator;
  int16_t number = 0;
  for (const Layer& l : layers)
    generator.SetLayer(++number, true, l.conductivity, l.density, l.specific_heat, l.resistance, l.inches / 12, 0);
  TransferFunctions out;
  generator.Generate(out, [] {});
  return static_cast<float>(out.b[0]);
}

/// A square matrix, row by row.
struct Matrix {
  explicit Matrix(size_t n) : size(n), items(n * n) {}
  double& at(size_t row, size_t column) { return items[row * size + column]; }
  Matrix times(const Matrix& other) const {
    Matrix product(size);
    for (size_t i = 0; i < size; ++i) {
      for (size_t k = 0; k < size; ++k) {
        const double factor = items[i * size + k];
        for (size_t j = 0; j < size; ++j) product.items[i * size + j] += factor * other.items[k * size + j];
      }
    }
    return product;
  }
  size_t size;
  std::vector<double> items;
};

/// Chain of resistances and capacities, its exponential over an hour by scaling and squaring, and the coefficients of
/// the characteristic polynomial from traces (Leverrier): what d costs; b and c would come on top.
double generate_dense(const std::vector<Layer>& layers) {
  std::vector<double> capacities, conductances;
  double pending = 0;
  for (const Layer& l : layers) {
    const double feet = double{l.inches} / 12;
    const double capacity = feet * double{l.density} * double{l.specific_heat} / kNodes;
    if (capacity <= 0) {
      pending += double{l.resistance};
      continue;
    }
    const double resistance = feet / double{l.conductivity} / kNodes;
    for (size_t i = 0; i < kNodes; ++i) {
      conductances.push_back(1 / (pending + resistance / 2));
      pending = resistance / 2;
      capacities.push_back(capacity);
    }
  }
  conductances.push_back(1 / pending);
  const size_t n = capacities.size();
  Matrix step(n), exponential(n), term(n);
  double norm = 0;
  for (size_t i = 0; i < n; ++i) {
    const double own = (conductances[i] + conductances[i + 1]) / capacities[i];
    norm = std::max(norm, 2 * own);
    step.at(i, i) = -own;
    if (i > 0) step.at(i, i - 1) = conductances[i] / capacities[i];
    if (i + 1 < n) step.at(i, i + 1) = conductances[i + 1] / capacities[i];
    exponential.at(i, i) = term.at(i, i) = 1;
  }
  const int squarings = std::max(0, static_cast<int>(std::ceil(std::log2(norm))) + 1);
  for (double& item : step.items) item = std::ldexp(item, -squarings);
  for (int order = 1; order <= 8; ++order) {
    term = term.times(step);
    for (size_t i = 0; i < n * n; ++i) exponential.items[i] += term.items[i] /= order;
  }
  for (int i = 0; i < squarings; ++i) exponential = exponential.times(exponential);
  Matrix rest(n);
  for (size_t i = 0; i < n; ++i) rest.at(i, i) = 1;
  double last = 0;
  for (size_t order = 1; order <= std::min(kTerms, n); ++order) {
    rest = exponential.times(rest);
    double trace = 0;
    for (size_t i = 0; i < n; ++i) trace += rest.at(i, i);
    last = -trace / static_cast<double>(order);
    for (size_t i = 0; i < n; ++i) rest.at(i, i) += last;
  }
  return last;
}

volatile double kept;  // so that no result is optimised away

/// A wall table and file, twice; spaces use every wall, and one system serves them all.
struct WallSample {
  explicit WallSample(const std::string& at) : folder(at) {
    std::filesystem::create_directories(folder);
    create_index(index());
    std::string script = "BEGIN; INSERT INTO AirSystemIndex (nIndex) VALUES (1);";
    for (int i = 1; i <= kWalls; ++i) {
      const std::string n = std::to_string(i);
      script += "INSERT INTO WallIndex VALUES (" + n + ",'Wall " + n +
                "',0.1,40,8);INSERT INTO Space_Wall_Links VALUES (" + n + "," + n +
                ");INSERT INTO System_Space_Links VALUES (1," + n + ");";
    }
    run_script(index(), script + "COMMIT;");
    std::ofstream(file(), std::ios::binary) << std::string(static_cast<size_t>(kWalls + 1) * kRecord, '\0');
  }
  std::string index() const { return folder + "/WALINX.MDB"; }
  std::string file() const { return folder + "/WAL.DAT"; }
  static constexpr size_t kRecord = sizeof(ConstructionRecord) + 10 * sizeof(LayerRecord);
  std::string folder;
};

/// The storage of a wall by hand, with the same statements.
class PlainWalls {
 public:
  explicit PlainWalls(const WallSample& sample)
      : database_(opened(sample.index()), &sqlite3_close),
        file_(::open(sample.file().c_str(), O_RDWR | O_CLOEXEC)),
        find_(database_.get(), "SELECT rowid, * FROM WallIndex WHERE nIndex = ? ORDER BY nIndex ASC LIMIT 1"),
        update_(database_.get(), "UPDATE WallIndex SET fThickness = ? WHERE rowid = ?") {
    PlainStatement(database_.get(), kScratchList).run();
    for (const std::string& statement : Reach::through_spaces("Space_Wall_Links", "Wall_ID").statements())
      marking_.emplace_back(database_.get(), statement.c_str());
  }
  ~PlainWalls() { ::close(file_); }
  PlainWalls(const PlainWalls&) = delete;
  PlainWalls& operator=(const PlainWalls&) = delete;

  void begin() { PlainStatement(database_.get(), "BEGIN").run(); }
  void save(int index, double thickness) {
    find_.bind(1, int64_t{index});
    find_.run();
    update_.bind(1, thickness);
    update_.bind(2, int64_t{index});
    update_.run();
    marking_[0].run();
    marking_[1].bind(1, int64_t{index});
    for (size_t i = 1; i < marking_.size(); ++i) marking_[i].run();
    const std::string record(WallSample::kRecord, ' ');
    if (::pwrite(file_, record.data(), record.size(), index * static_cast<off_t>(record.size())) < 0)
      throw std::runtime_error("pwrite");
  }
  void commit() {
    ::fsync(file_);
    PlainStatement(database_.get(), "COMMIT").run();
  }

 private:
  static sqlite3* opened(const std::string& path) {
    sqlite3* database = nullptr;
    sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READWRITE, nullptr);
    sqlite3_exec(database, "PRAGMA temp_store = MEMORY", nullptr, nullptr, nullptr);
    return database;
  }
  std::unique_ptr<sqlite3, decltype(&sqlite3_close)> database_;
  int file_;
  PlainStatement find_, update_;
  std::vector<PlainStatement> marking_;
};

Ptr<CA_ConstructionAssly> wall_of(const WallSample& sample, const Ptr<Database>& database, int number) {
  auto wall = std::make_shared<CA_ConstructionAssly>();
  wall->FileName = sample.file();
  wall->SetDBHandle(database);
  wall->Load(static_cast<int16_t>(number));
  wall->Name = "Wall " + std::to_string(number);
  int slot = 0;
  for (const Layer& l : sample_wall(number)) {
    CA_Layer& layer = wall->layer(++slot);
    layer.LayerUsed = true;
    layer.SetThicknessInches(l.inches);
    layer.Conductivity = l.conductivity;
    layer.Density = l.density;
    layer.SpecificHeat = l.specific_heat;
    layer.ThermalResistance = l.resistance;
  }
  return wall;
}

using Walls = std::vector<Layer> (*)(int);
constexpr int kGenerated = 100;

Side generation(Walls wall) {
  return {[wall] {
    for (int i = 0; i < kGenerated; ++i) kept = double{generate(wall(i))};
  }};
}

void generations(Report& report) {
  const auto beside_dense = [&](const char* what, Walls wall, double most) {
    const Side dense{[wall] {
      for (int i = 0; i < kGenerated; ++i) kept = generate_dense(wall(i));
    }};
    report.compare({what, kGenerated, most, 15}, generation(wall), dense);
  };
  beside_dense("transfer functions, beside a dense state space", sample_wall, 1.0 / 15);
  beside_dense("ten layers, beside a dense state space", ten_layer_wall, 1.0 / 40);
  beside_dense("alike leaves, beside a dense state space", clustered_wall, 1.0 / 5);
  report.compare({"alike leaves, beside ordinary walls", kGenerated, 20, 15}, generation(clustered_wall),
                 generation(sample_wall));
}

void saves(Report& report, const std::string& folder) {
  const WallSample ours_sample(folder + "/walls/ours"), floor_sample(folder + "/walls/floor");
  const Ptr<Database> database = Database::open(ours_sample.index());
  PlainWalls plain(floor_sample);
  std::vector<Ptr<CA_ConstructionAssly>> walls;
  for (int i = 1; i <= kWalls; ++i) walls.push_back(wall_of(ours_sample, database, i));
  const Side ours{[&] {
    Transaction transaction;
    for (const auto& wall : walls) {
      wall->layer(2).SetThicknessInches(wall->layer(2).ThicknessInches() + 0.01F);
      wall->Save();
    }
    transaction.commit();
  }};
  const Side floor{[&] {
    plain.begin();
    for (int i = 1; i <= kWalls; ++i) {
      kept = double{generate(sample_wall(i))};
      plain.save(i, kept);
    }
    plain.commit();
  }};
  report.compare({"save 1,000 walls, beside generation and storage", kWalls, 1.5, 21}, ours, floor);
}

}  // namespace

void construction_cases(Report& report, const std::string& folder) {
  generations(report);
  saves(report, folder);
}

}  // namespace tarn::bench
