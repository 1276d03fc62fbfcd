# SPDX-License-Identifier: GPL-3.0-or-later
"""Simulates mouse and keyboard on a Wayland compositor that has neither a screen nor input devices.
This client implements only the part of the protocol that virtual devices need. A drag requires a
virtual mouse that stays connected between two movements; no tool in Debian keeps it connected."""

import array
import socket
import struct
import tempfile
import time

from waiting import check

REGISTRY = 2
# BTN_LEFT, BTN_MIDDLE and BTN_RIGHT of linux/input-event-codes.h, by the button numbers of X11.
BUTTONS = {1: 0x110, 2: 0x112, 3: 0x111}
# Key codes of linux/input-event-codes.h.
KEYS = {"Escape": 1, "Tab": 15, "Return": 28, "ctrl": 29, "shift": 42, "alt": 56, "space": 57,
        "F1": 59, "F10": 68, "Home": 102, "Up": 103, "Left": 105, "Right": 106, "Down": 108,
        "Menu": 127,
        **{letter: 16 + i for i, letter in enumerate("qwertyuiop")},
        **{letter: 30 + i for i, letter in enumerate("asdfghjkl")},
        **{letter: 44 + i for i, letter in enumerate("zxcvbnm")}}
MODIFIER_BITS = {"shift": 1, "ctrl": 4, "alt": 8}
KEYMAP = b"""xkb_keymap {
xkb_keycodes { include "evdev+aliases(qwerty)" };
xkb_types { include "complete" };
xkb_compat { include "complete" };
xkb_symbols { include "pc+us+inet(evdev)" };
};\0"""


class WaylandInput:
    """Connects to a compositor's socket and creates a virtual mouse and a virtual keyboard. close()
    removes both."""

    def __init__(self, path, screen_size):
        self._width, self._height = screen_size
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.connect(str(path))
        self._last_id = 1
        self._globals = {}
        self._received = b""
        self._send(1, 1, self._new_id())  # wl_display.get_registry
        self._synchronize()
        seat = self._bind("wl_seat", 1)
        pointers = self._bind("zwlr_virtual_pointer_manager_v1", 1)
        keyboards = self._bind("zwp_virtual_keyboard_manager_v1", 1)
        self._pointer = self._new_id()
        self._send(pointers, 0, seat, self._pointer)
        self._keyboard = self._new_id()
        self._send(keyboards, 0, seat, self._keyboard)
        self._send_keymap()
        self._synchronize()

    def close(self):
        self._socket.close()

    # Mouse and keys.

    def move(self, x, y):
        self._send(self._pointer, 1, self._now(), x, y, self._width, self._height)
        self._end_frame()

    def button(self, down, number=1):
        self._send(self._pointer, 2, self._now(), BUTTONS[number], int(down))
        self._end_frame()

    def press(self, writing):
        """Presses and releases the key that `writing` names, with its modifiers if it has any.
        `writing` uses the notation of xdotool ("alt+a", "Return")."""
        *modifiers, key = writing.split("+")
        for modifier in modifiers:
            self._key(modifier, True)
        self._send(self._keyboard, 2, sum(MODIFIER_BITS[each] for each in modifiers), 0, 0, 0)
        self._key(key, True)
        self._key(key, False)
        for modifier in modifiers:
            self._key(modifier, False)
        self._send(self._keyboard, 2, 0, 0, 0, 0)
        self._synchronize()

    def _key(self, name, down):
        self._send(self._keyboard, 1, self._now(), KEYS[name], int(down))

    def _end_frame(self):
        self._send(self._pointer, 4)
        self._synchronize()

    def _send_keymap(self):
        xkb_v1 = 1
        with tempfile.TemporaryFile() as file:
            file.write(KEYMAP)
            file.flush()
            self._send(self._keyboard, 0, xkb_v1, len(KEYMAP), file=file.fileno())

    # The protocol. A message consists of 32-bit words. It starts with the identifier of the object
    # that receives or sends the message, and with the message's size and operation.

    @staticmethod
    def _now():
        return time.monotonic_ns() // 1_000_000 & 0xFFFFFFFF

    def _new_id(self):
        self._last_id += 1
        return self._last_id

    def _send(self, target, operation, *words, text=b"", file=None):
        """Sends a message. `text`, if any, follows the first of `words` (for wl_registry.bind)."""
        body = b"".join(struct.pack("=I", word) for word in words[:1 if text else None])
        if text:
            padded = text + b"\0" * (4 - len(text) % 4)
            body += struct.pack("=I", len(text) + 1) + padded
            body += b"".join(struct.pack("=I", word) for word in words[1:])
        message = struct.pack("=II", target, (8 + len(body)) << 16 | operation) + body
        descriptors = [] if file is None else [
            (socket.SOL_SOCKET, socket.SCM_RIGHTS, array.array("i", [file]))]
        self._socket.sendmsg([message], descriptors)

    def _bind(self, interface, version):
        check(interface in self._globals, f"the compositor has no {interface}")
        made = self._new_id()
        self._send(REGISTRY, 0, self._globals[interface], version, made, text=interface.encode())
        return made

    def _synchronize(self):
        """Returns when the compositor has handled all messages that were sent before."""
        callback = self._new_id()
        self._send(1, 0, callback)
        while callback not in self._events():
            pass

    def _events(self):
        """Receives data once, handles the complete messages, and returns the objects that sent
        them."""
        received = self._socket.recv(65536)
        check(received, "the compositor closed the connection")
        self._received += received
        senders = set()
        while len(self._received) >= 8:
            sender, word = struct.unpack_from("=II", self._received)
            size, operation = word >> 16, word & 0xFFFF
            if len(self._received) < size:
                break
            body, self._received = self._received[8:size], self._received[size:]
            senders.add(sender)
            check(sender != 1 or operation != 0, f"the compositor reports an error: {body!r}")
            if sender == REGISTRY and operation == 0:
                name, length = struct.unpack_from("=II", body)
                self._globals[body[8:8 + length - 1].decode()] = name
        return senders
