# SPDX-License-Identifier: GPL-3.0-or-later
"""Starts a sound server that only the tests use. Its sink consumes samples at the rate of a sound
card, and what the sink plays is recorded. The user's server and configuration are not used."""

import signal

from sound import BYTES_PER_FRAME, FRAME_RATE
from waiting import wait_for

SINK = "sonarith"


class SoundServer:
    """The ALSA device "default" of all programs that `desktop` starts after the creation of this
    object. Desktop.end_programs() kills the server."""

    def __init__(self, desktop):
        self._folder = desktop.home / "sound"
        self._folder.mkdir()
        self._socket = self._folder / "native"
        self._recording = self._folder / "played.raw"
        configuration = self._folder / "asound.conf"
        configuration.write_text(
            "</usr/share/alsa/alsa.conf>\n"
            f'pcm.!default {{ type pulse server "unix:{self._socket}" fallback "" '
            'hint.description "Test" }\n', encoding="utf-8")
        environment = {"ALSA_CONFIG_PATH": str(configuration),
                        "PULSE_RUNTIME_PATH": str(self._folder),
                        "PULSE_STATE_PATH": str(self._folder)}
        desktop.environment.update(environment)
        self._server = desktop.launch(
            "/usr/bin/pulseaudio", "--daemonize=no", "--exit-idle-time=-1", "-n",
            "--use-pid-file=no", "-L",
            f"module-null-sink sink_name={SINK} format=s16le rate=44100 channels=2 norewinds=1",
            "-L", f"module-native-protocol-unix auth-anonymous=1 socket={self._socket}")
        wait_for("the sound server", self._socket.exists)
        with open(self._recording, "wb") as played:
            desktop.launch("/usr/bin/parec", f"--server=unix:{self._socket}", "--raw",
                           "--format=s16le", "--rate=44100", "--channels=2", "--latency-msec=20",
                           f"--device={SINK}.monitor", log=played)
        wait_for("the recording of the sink", lambda: self._recording.stat().st_size > 0)

    def played(self):
        """The bytes of all samples that were played so far, including silence."""
        return self._recording.read_bytes()

    def position(self):
        """The length of played() in bytes, rounded down to whole frames."""
        return self._recording.stat().st_size // BYTES_PER_FRAME * BYTES_PER_FRAME

    def latest(self, seconds=0.4):
        """The bytes of the samples that were played last."""
        count = int(seconds * FRAME_RATE) * BYTES_PER_FRAME
        with open(self._recording, "rb") as played:
            played.seek(max(0, self.position() - count))
            return played.read(count)

    def wait_for_sound(self, what):
        wait_for(f"sound: {what}", lambda: any(self.latest()))

    def wait_for_silence(self, what):
        wait_for(f"silence: {what}", lambda: not any(self.latest()))

    def kill(self):
        self._server.kill()
        self._server.wait()

    def hang(self):
        """Suspends the server's process, so that the server does not respond."""
        self._server.send_signal(signal.SIGSTOP)
