#pragma once

#include "DispatchObject.h"

namespace workbench {

// Each adds to `Base`, which implements an interface of the host, the slots of that interface that are never called.

template <class Base>
struct FieldSlots : Base {
  using Base::Base;
  KV_UNUSED_SLOT(7)
  KV_UNUSED_SLOT(8)
  KV_UNUSED_SLOT(9)
  KV_UNUSED_SLOT(10)
  KV_UNUSED_SLOT(11)
  KV_UNUSED_SLOT(12)
  KV_UNUSED_SLOT(13)
  KV_UNUSED_SLOT(14)
  KV_UNUSED_SLOT(15)
  KV_UNUSED_SLOT(16)
  KV_UNUSED_SLOT(17)
  KV_UNUSED_SLOT(18)
  KV_UNUSED_SLOT(19)
  KV_UNUSED_SLOT(20)
  KV_UNUSED_SLOT(23)
  KV_UNUSED_SLOT(24)
};

template <class Base>
struct TableSlots : Base {
  using Base::Base;
  KV_UNUSED_SLOT(7)
  KV_UNUSED_SLOT(8)
  KV_UNUSED_SLOT(9)
  KV_UNUSED_SLOT(11)
  KV_UNUSED_SLOT(12)
  KV_UNUSED_SLOT(13)
  KV_UNUSED_SLOT(15)
  KV_UNUSED_SLOT(17)
  KV_UNUSED_SLOT(18)
  KV_UNUSED_SLOT(21)
  KV_UNUSED_SLOT(22)
  KV_UNUSED_SLOT(24)
  KV_UNUSED_SLOT(25)
};

template <class Base>
struct RuleFilterSlots : Base {
  using Base::Base;
  KV_UNUSED_SLOT(7)
};

template <class Base>
struct RuleServiceSlots : Base {
  using Base::Base;
  KV_UNUSED_SLOT(8)
  KV_UNUSED_SLOT(9)
};

template <class Base>
struct MainMenuSlots : Base {
  using Base::Base;
  KV_UNUSED_SLOT(8)
};

template <class Base>
struct SubMenuSlots : Base {
  using Base::Base;
  KV_UNUSED_SLOT(7)
  KV_UNUSED_SLOT(8)
  KV_UNUSED_SLOT(9)
};

}  // namespace workbench
