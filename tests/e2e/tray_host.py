# SPDX-License-Identifier: GPL-3.0-or-later
"""Simulates a panel that shows tray icons, and a user who reads an icon's tool tip and chooses from
the icon's menu. On the bus, the panel owns the name of the StatusNotifierWatcher, with which
programs register their icons."""

import threading

from gi.repository import Gio, GLib

from waiting import check, wait_for

WATCHER = "org.kde.StatusNotifierWatcher"
ITEM = "org.kde.StatusNotifierItem"
MENU = "com.canonical.dbusmenu"
_WATCHER_XML = f"""<node><interface name="{WATCHER}">
<method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
<method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
<property name="RegisteredStatusNotifierItems" type="as" access="read"/>
<property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
<property name="ProtocolVersion" type="i" access="read"/>
</interface></node>"""


class TrayHost:
    """A simulated panel. Use as a context manager. It replies on a thread of its own, so that it
    replies even while the test waits. If `is_queued`, it gets the watcher's bus name only when the
    panel that owns the name ends."""

    def __init__(self, address, is_queued=False):
        self._address = address
        self._is_queued = is_queued
        self._registered = []
        self._signals = []
        self._context = GLib.MainContext.new()
        self._loop = GLib.MainLoop.new(self._context, False)
        self._thread = threading.Thread(target=self._serve, daemon=True)
        self._ready = threading.Event()
        self._bus = None

    def __enter__(self):
        self._thread.start()
        check(self._ready.wait(30),
              "the bus did not accept the panel's request for the watcher's name")
        return self

    def __exit__(self, *_):
        self.die()

    def _serve(self):
        self._context.push_thread_default()
        flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT |
                 Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
        self._bus = Gio.DBusConnection.new_for_address_sync(self._address, flags, None, None)
        self._bus.set_exit_on_close(False)
        interface = Gio.DBusNodeInfo.new_for_xml(_WATCHER_XML).interfaces[0]
        self._bus.register_object("/StatusNotifierWatcher", interface, self._on_call,
                                  self._on_read, None)
        self._bus.signal_subscribe(None, ITEM, None, None, None, Gio.DBusSignalFlags.NONE,
                                   lambda _bus, sender, _path, _interface, signal, _values:
                                   self._signals.append((sender, signal)))
        self._bus.signal_subscribe("org.freedesktop.DBus", "org.freedesktop.DBus",
                                   "NameOwnerChanged", None, None, Gio.DBusSignalFlags.NONE,
                                   self._on_owner)
        def is_ready(*_):
            self._ready.set()
        Gio.bus_own_name_on_connection(self._bus, WATCHER, Gio.BusNameOwnerFlags.NONE,
                                       None if self._is_queued else is_ready,
                                       is_ready if self._is_queued else None)
        self._loop.run()
        self._context.pop_thread_default()

    def _on_call(self, _bus, sender, _path, _interface, method, arguments, invocation):
        if method == "RegisterStatusNotifierItem":
            # The argument is a bus name or the path of an object of the caller.
            name = arguments.unpack()[0]
            self._registered.append(sender if name.startswith("/") else name)
        invocation.return_value(None)

    def _on_read(self, _bus, _sender, _path, _interface, name):
        return {"RegisteredStatusNotifierItems": GLib.Variant("as", self._registered),
                "IsStatusNotifierHostRegistered": GLib.Variant("b", True),
                "ProtocolVersion": GLib.Variant("i", 0)}[name]

    def _on_owner(self, _bus, _sender, _path, _interface, _signal, values):
        name, _, owner = values.unpack()
        if not owner:
            self._registered = [item for item in self._registered if item != name]

    def die(self):
        """Simulates the end of the panel's process: closes the connection to the bus, which
        releases the watcher's name."""
        if self._thread.is_alive():
            if self._bus is not None and not self._bus.is_closed():
                self._bus.close_sync(None)
            self._loop.quit()
            self._thread.join()

    # What a user sees.

    def icons(self):
        return list(self._registered)

    def wait_for_icon(self):
        return wait_for("an icon in the panel", self.icons)[0]

    def wait_for_no_icon(self):
        wait_for("a panel without icons", lambda: not self.icons())

    def signals(self):
        """The names of the signals that icons have sent, oldest first."""
        return [signal for _, signal in list(self._signals)]

    def _call(self, path, interface, method, arguments=None):
        return self._bus.call_sync(self.wait_for_icon(), path, interface, method, arguments, None,
                                   Gio.DBusCallFlags.NONE, 30_000, None).unpack()

    def read(self, name):
        """The value of a property of the icon."""
        return self._call("/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get",
                          GLib.Variant("(ss)", (ITEM, name)))[0]

    def tip(self):
        return self.read("ToolTip")[2]

    def pictures(self):
        """The ARGB bytes of the icon's square pictures, by their width in pixels."""
        return {width: bytes(data) for width, height, data in self.read("IconPixmap")
                if width == height}

    def _entries(self):
        layout = self._call(self.read("Menu"), MENU, "GetLayout",
                            GLib.Variant("(iias)", (0, -1, [])))[1]
        return layout[2]

    def entries(self):
        """Informs the program that the icon's menu opens. Returns the captions of the menu's
        entries, "-" for a separator."""
        self._call(self.read("Menu"), MENU, "AboutToShow", GLib.Variant("(i)", (0,)))
        return ["-" if values.get("type") == "separator" else values.get("label", "")
                for _, values, _ in self._entries()]

    # What a user does.

    def choose(self, caption):
        """Chooses an entry of the icon's menu."""
        number = next(number for number, values, _ in self._entries()
                      if values.get("label") == caption)
        self._call(self.read("Menu"), MENU, "Event",
                   GLib.Variant("(isvu)", (number, "clicked", GLib.Variant("i", 0), 0)))

    def click(self, button):
        """Clicks on the icon; `button` is "Activate", "SecondaryActivate" or "ContextMenu"."""
        self._call("/StatusNotifierItem", ITEM, button, GLib.Variant("(ii)", (600, 400)))
