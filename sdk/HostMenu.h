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
  /// Registers a key. `flags` and `key` are those of an accelerator table entry; `hotKey` supports `IkvHotKey`.
  virtual HRESULT STDMETHODCALLTYPE AddHotKey(long flags, long key, IDispatch* target, IDispatch** hotKey) = 0;
};

/// One registered hot key.
struct IkvHotKey : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_CommandID(long* id) = 0;
};

KV_UUID(struct, IkvMainMenu, "C7CB90DD-723F-41AB-AE1A-2546E608BD3B")
KV_UUID(struct, IkvSubMenu, "B97EA88A-78FC-48C1-8E9C-48873239C82D")
KV_UUID(struct, IkvMenuItem, "FD31830D-120B-414B-92A5-EF05D12281A4")
KV_UUID(struct, IkvHotKeyCollection, "663357AB-5606-4F30-A72B-8390F11D83B8")
KV_UUID(struct, IkvHotKey, "14CFFB93-D80A-449B-B70B-34C3C84FB2A9")
