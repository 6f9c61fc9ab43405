#include "devices/gpib_status.h"

#include <algorithm>
#include <array>

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

}  // namespace

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
