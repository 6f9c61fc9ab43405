// The bus board, and what its library's codes mean.

#include <algorithm>
#include <array>

#include "devices/gpib.h"

namespace zento {
namespace {

struct Outcome {
  std::uint32_t code;
  std::string_view text;
};

constexpr std::array kOutcomes = {
    Outcome{80, " : I/Oアドレスエラーです。確認してください。"},
    Outcome{82, " : レジストリ設定のエラーです。"},
    Outcome{128, " : データ受信オーバー(受信)又は[SRQ]は上がっていません(ポーリング)"},
    Outcome{140, " : 非同期関数の実行中です"},
    Outcome{141, " : 非同期関数が強制終了されました"},
    Outcome{190, " : イベントオブジェクトが作成できません"},
    Outcome{200, " : スレッドが作成できません。"},
    Outcome{201, " : 他のイベントが実行中です。"},
    Outcome{210, " : DMAが設定できませんでした。"},
    Outcome{240, " : [Esc]キーが押されました。"},
    Outcome{241, " : File入出力エラーです。"},
    Outcome{242, " : アドレス指定が間違っています。"},
    Outcome{243, " : バッファ指定エラーです。"},
    Outcome{244, " : 配列サイズエラーです。"},
    Outcome{245, " : バッファが小さすぎます。"},
    Outcome{246, " : 不正なオブジェクト名です。"},
    Outcome{247, " : デバイス名の横のチェックが無効です。"},
    Outcome{248, " : 不正なデータ型です。"},
    Outcome{249, " : これ以上デバイスを追加できません。"},
    Outcome{250, " : デバイス名が見つかりません。"},
    Outcome{251, " : デリミタがデバイス間で違っています。"},
    Outcome{252, " : GP-IBエラーです。確認してください。"},
    Outcome{253, " : デリミタのみを受信しました。"},
    Outcome{254, " : タイムアウトしました。"},
    Outcome{255, " : パラメータエラーです。"},
};

constexpr std::uint32_t kFirstError = 3;

class BusBoard final : public BusLink {
 public:
  explicit BusBoard(vendor::Gpib& bus) : bus_(bus) {}

  bool Initialise(std::string& text) override {
    if (!bus_.GpIni || !bus_.GpIfc || !bus_.GpRen || !bus_.GpTimeout || !bus_.GpBoardsts ||
        !bus_.GpTalk || !bus_.GpExit) {
      text = WhyMissing(bus_.missing, kIts);
      return false;
    }
    bus_.GpExit();
    if (CheckGpibStatus("GpIni", bus_.GpIni(), text) != 0) return false;
    std::array<std::int32_t, 4> status{};
    constexpr std::array<std::int32_t, 4> kItems = {10, 8, 12, 13};
    for (std::size_t i = 0; i < kItems.size(); ++i) bus_.GpBoardsts(kItems[i], &status[i]);
    if (status[0] == 0) {  // the board is the system's controller
      if (CheckGpibStatus("GpIfc", bus_.GpIfc(1), text) != 0) return false;
      if (CheckGpibStatus("GpRen", bus_.GpRen(), text) != 0) return false;
    }
    if (CheckGpibStatus("GpTimeout", bus_.GpTimeout(kTimeout), text) != 0) return false;
    text = "初期化を終了しました。";
    return true;
  }

  bool Send(std::int32_t address, std::string_view command, std::string& text) override {
    if (command.empty()) return true;
    if (!bus_.GpTalk) {
      text = WhyMissing(bus_.missing, kIts);
      return false;
    }
    // The count of numbers that follow, the board itself as talker, the listener.
    const std::array<std::int32_t, 3> addresses = {2, 0, address};
    const std::string line(command);
    const std::int32_t code =
        bus_.GpTalk(addresses.data(), static_cast<std::int32_t>(line.size()), line.c_str());
    return CheckGpibStatus("GpTalk", code, text) == 0;
  }

 private:
  static constexpr std::int32_t kTimeout = 10000;  // in the library's own unit
  static constexpr const char* kIts = "bus board: its";

  vendor::Gpib& bus_;
};

}  // namespace

std::unique_ptr<BusLink> MakeBusBoard(const DeviceParts& parts) {
  return std::make_unique<BusBoard>(parts.libraries.gpib);
}

std::int32_t CheckGpibStatus(std::string_view function, std::int32_t code, std::string& text) {
  const auto bits = static_cast<std::uint32_t>(code);
  const std::uint32_t outcome = bits & 0xFF;
  text = std::string(function) + " : 正常に終了しました｡";
  if (outcome >= kFirstError) {
    const auto* const known = std::find_if(kOutcomes.begin(), kOutcomes.end(),
                                           [&](const Outcome& o) { return o.code == outcome; });
    if (known != kOutcomes.end()) text = std::string(function).append(known->text);
  }
  switch (bits & 0xFFFFFF00) {
    case 0x100:
      text += " -SRQを受信[ステータス]";
      break;
    case 0x200:
      text += " -IFCを受信[ステータス]";
      break;
    case 0x300:
      text += " -SRQとIFCを受信[ステータス]";
      break;
    default:
      break;
  }
  return outcome >= kFirstError ? 1 : 0;
}

}  // namespace zento
