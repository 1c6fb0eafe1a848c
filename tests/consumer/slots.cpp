#include <varnel_common/publicdata.h>
#include <varnel_common/str.h>
#include <varnel_common/zepv2data.h>

#include <iostream>

#include "families.h"

using namespace VARNEL_COMMON;

namespace {

void ConvertSlots() {
  std::cout << HexStr2Int("0x1F") << ' ' << IsExistShelfID("3-5") << ' ' << WSlotIDi2str(0x305) << ' '
            << WSlotIDi2Hexstr(0xA1F) << ' ' << WSlotIDstr2i("3-5") << '\n';
  std::cout << convertSlot2strDC(50000, 0x305) << ' ' << convertSlotDC("305") << '\n';
}

void ParseSlots() {
  unsigned short shelf = 0;
  unsigned short slot = 0;
  std::cout << ParseTL1SlotID("FAC-1-SLOT-3-5", shelf, slot) << ' ' << shelf << ' ' << slot << '\n';
  std::cout << ParseMMLSlotID("2-14", shelf, slot) << ' ' << shelf << ' ' << slot << '\n';
  std::cout << GetNESlotID(305) << '\n';
}

void Classify() {
  std::cout << IsZepv2(52100) << IsZepv2(52099) << IsZep08(50800) << IsTL1NeID(0x1000000) << IsTL1NeID(0xFFFFFF)
            << '\n';
  std::cout << IsKorvaneNE(52100, "KVA 4210") << IsKorvaneNE(52099, "KVA 4210") << IsSccBdName("xSCCx")
            << IsSccBdName("fan") << '\n';
}

}  // namespace

void UseSlots() {
  ConvertSlots();
  ParseSlots();
  Classify();
}
