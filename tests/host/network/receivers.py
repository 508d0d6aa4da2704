"""Receivers of streams in plain Python, and what tells whether the right pictures came."""
import http.server
import os
import pathlib
import re
import socket
import struct
import subprocess
import tempfile
import threading

HOST = os.environ["ZYR_HOST_PROGRAM"]
FFMPEG = "/usr/bin/ffmpeg"


class Folder(tempfile.TemporaryDirectory):
    def __init__(self):
        super().__init__(prefix="zyr-network-")

    def __enter__(self):
        return pathlib.Path(super().__enter__())


def start_stream(*arguments, **keywords):
    return subprocess.Popen([HOST, "stream", *map(str, arguments)], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, **keywords)


def frames_of_y4m(data):
    """The pictures behind the head, as bytes."""
    head, _, rest = data.partition(b"\n")
    width, height = (int(re.search(rb" " + sign + rb"(\d+)", head)[1]) for sign in (b"W", b"H"))
    size = width * height + 2 * ((width + 1) // 2) * ((height + 1) // 2)
    frames = []
    while rest:
        line, _, rest = rest.partition(b"\n")
        assert line.startswith(b"FRAME"), line
        frames.append(rest[:size])
        rest = rest[size:]
    return frames


def decode(path):
    """Another program's pictures of a file."""
    run = subprocess.run([FFMPEG, "-v", "error", "-i", path, "-fps_mode", "passthrough", "-pix_fmt", "yuv420p", "-f", "yuv4mpegpipe", "-"],
                         capture_output=True, check=True)
    return frames_of_y4m(run.stdout)


def free_udp_ports():
    """An even port that is free, as is the next one."""
    while True:
        with socket.socket(type=socket.SOCK_DGRAM) as first, socket.socket(type=socket.SOCK_DGRAM) as second:
            first.bind(("127.0.0.1", 0))
            port = first.getsockname()[1]
            if port % 2 == 0:
                try:
                    second.bind(("127.0.0.1", port + 1))
                    return port
                except OSError:
                    pass


def is_udp_bound(port):
    tables = pathlib.Path("/proc/net/udp").read_text() + pathlib.Path("/proc/net/udp6").read_text()
    return f":{port:04X} " in tables


class TcpListener:
    """Takes one connection after another."""

    def __enter__(self):
        self.socket = socket.socket()
        self.socket.bind(("127.0.0.1", 0))
        self.socket.listen()
        self.port = self.socket.getsockname()[1]
        return self

    def __exit__(self, *_):
        self.socket.close()

    def accept(self):
        return self.socket.accept()[0]

    def take_all(self):
        data = b""
        with self.accept() as connection:
            while part := connection.recv(65536):
                data += part
        return data


class HttpTaker:
    """A server that keeps what is posted to it."""

    def __enter__(self):
        bodies = self.bodies = []

        class Handler(http.server.BaseHTTPRequestHandler):
            protocol_version = "HTTP/1.1"

            def do_POST(self):
                body = b""
                while size := int(self.rfile.readline(), 16):
                    body += self.rfile.read(size)
                    self.rfile.readline()
                self.rfile.readline()
                bodies.append((self.path, body))
                self.send_response(200)
                self.send_header("Content-Length", "0")
                self.end_headers()

            def log_message(self, *_):
                pass

        self.server = http.server.HTTPServer(("127.0.0.1", 0), Handler)
        self.port = self.server.server_address[1]
        self.thread = threading.Thread(target=self.server.handle_request)
        self.thread.start()
        return self

    def __exit__(self, *_):
        self.thread.join()
        self.server.server_close()


class RtspSession:
    """One publisher's connection to a media server: ANNOUNCE, SETUP over the same connection, RECORD."""

    def __init__(self, connection):
        self.stream = connection.makefile("rwb")
        self.connection = connection
        self.requests = []
        self.description = ""
        self.packets = []  # of RTP

    def close(self):
        self.stream.close()
        self.connection.close()

    def serve_one(self, status="200 OK"):
        """Takes a request or a packet. False at the end."""
        first = self.stream.read(1)
        if not first:
            return False
        if first == b"$":
            channel, size = struct.unpack(">BH", self.stream.read(3))
            packet = self.stream.read(size)
            if channel == 0:
                self.packets.append(packet)
            return True
        line = (first + self.stream.readline()).decode()
        headers = {}
        while (text := self.stream.readline().decode().strip()):
            name, _, value = text.partition(":")
            headers[name.lower()] = value.strip()
        body = self.stream.read(int(headers.get("content-length", 0))).decode()
        method = line.split()[0]
        self.requests.append(method)
        answer = [f"RTSP/1.0 {status}", f"CSeq: {headers['cseq']}", "Session: 7"]
        if method == "ANNOUNCE":
            self.description = body
        elif method == "SETUP":
            answer.append(f"Transport: {headers['transport']}")
        self.stream.write(("\r\n".join(answer) + "\r\n\r\n").encode())
        self.stream.flush()
        return True

    def serve_until(self, condition):
        while not condition(self):
            if not self.serve_one():
                raise AssertionError(f"the publisher left after {self.requests}, {len(self.packets)} packets")


def frames_of_vp9(packets):
    """Times and frames of RTP packets of VP9 whose descriptors tell no more than beginning and end."""
    frames, frame = [], b""
    for packet in packets:
        assert packet[0] == 0x80 and packet[1] & 127 == 96, packet[:2]
        descriptor = packet[12]
        assert descriptor & ~0x0C == 0, descriptor
        assert bool(descriptor & 8) == (not frame)
        frame += packet[13:]
        if packet[1] & 128:
            frames.append((struct.unpack_from(">I", packet, 4)[0], frame))
            frame = b""
    return frames


def write_ivf(path, frames, width, height):
    data = struct.pack("<4sHH4sHHIII", b"DKIF", 0, 32, b"VP90", width, height, 30, 1, len(frames)) + bytes(4)
    for number, (_, frame) in enumerate(frames):
        data += struct.pack("<IQ", len(frame), number) + frame
    path.write_bytes(data)
