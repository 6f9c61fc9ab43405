// Stands in for the bus board's library.

#include <cstdint>
#include <cstring>

extern "C" {

std::int32_t GpIni() {
  return 0;
}

std::int32_t GpIfc(std::int32_t time) {
  return time;
}

std::int32_t GpRen() {
  return 0;
}

std::int32_t GpTimeout(std::int32_t timeout) {
  return timeout;
}

std::int32_t GpBoardsts(std::int32_t item, std::int32_t* value) {
  *value = item * 2;
  return 0;
}

std::int32_t GpTalk(const std::int32_t* addresses, std::int32_t length, const char* text) {
  return static_cast<std::int32_t>(std::strlen(text)) == length ? addresses[2] : -1;
}

std::int32_t GpExit() {
  return 0;
}
}
