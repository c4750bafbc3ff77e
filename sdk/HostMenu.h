#pragma once

#include "InterfaceSupport.h"

struct IkvMenuItem;
struct IkvSubMenu;

/// The host's main menu.
struct IkvMainMenu : IDispatch {
  /// Finds the submenu with this caption. S_OK and null when there is none.
  virtual HRESULT STDMETHODCALLTYPE FindSubMenu(BSTR caption, IkvSubMenu** submenu) = 0;
  KV_RESERVED_SLOT(8);
  virtual HRESULT STDMETHODCALLTYPE AddSubMenu(BSTR caption, BSTR hint, long flags, IkvSubMenu** submenu) = 0;
};

/// One submenu of the host's main menu.
struct IkvSubMenu : IDispatch {
  KV_RESERVED_SLOT(7);
  KV_RESERVED_SLOT(8);
  KV_RESERVED_SLOT(9);
  /// Appends a command. When it is picked the host calls `IkvPlugin::DoCommand` on `target` with the item's id.
  virtual HRESULT STDMETHODCALLTYPE AddCommand(BSTR caption, long reserved1, long reserved2, long reserved3,
                                               IUnknown* reserved4, long kind, IDispatch* target,
                                               IkvMenuItem** item) = 0;
};

/// One command of a submenu.
struct IkvMenuItem : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_CommandID(long* id) = 0;
};

/// The host's collection of hot keys.
struct IkvHotKeyCollection : IDispatch {
  /// Registers a key. `flags` and `key` are those of an accelerator table entry; `hotKey` answers `IkvHotKey`.
  virtual HRESULT STDMETHODCALLTYPE AddHotKey(long flags, long key, IDispatch* target, IDispatch** hotKey) = 0;
};

/// One registered hot key.
struct IkvHotKey : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_CommandID(long* id) = 0;
};

__CRT_UUID_DECL(IkvMainMenu, 0xc7cb90dd, 0x723f, 0x41ab, 0xae, 0x1a, 0x25, 0x46, 0xe6, 0x08, 0xbd, 0x3b)
__CRT_UUID_DECL(IkvSubMenu, 0xb97ea88a, 0x78fc, 0x48c1, 0x8e, 0x9c, 0x48, 0x87, 0x32, 0x39, 0xc8, 0x2d)
__CRT_UUID_DECL(IkvMenuItem, 0xfd31830d, 0x120b, 0x414b, 0x92, 0xa5, 0xef, 0x05, 0xd1, 0x22, 0x81, 0xa4)
__CRT_UUID_DECL(IkvHotKeyCollection, 0x663357ab, 0x5606, 0x4f30, 0xa7, 0x2b, 0x83, 0x90, 0xf1, 0x1d, 0x83, 0xb8)
__CRT_UUID_DECL(IkvHotKey, 0x14cffb93, 0xd80a, 0x449b, 0xb7, 0x0b, 0x34, 0xc3, 0xc8, 0x4f, 0xb2, 0xa9)
