// Where the host's data files (schema, dictionary, catalogues, demo data) live.
#include <cstdlib>
#include <string>

#include "corvina20/MervoStatus.h"

namespace corvina20 {

std::string DataDirectory() {
  if (const char* dir = std::getenv("CORVINA_DATA_DIR"); dir != nullptr && *dir != '\0') {
    return dir;
  }
  return CORVINA_DEFAULT_DATA_DIR;
}

}  // namespace corvina20
