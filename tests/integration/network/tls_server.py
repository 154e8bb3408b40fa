"""A server with good and bad certificates, each on a port of its own on the loopback address.

Prints the file of the authority that signed them and the ports, in one line, and ends with its standard input. The
answer to a request is its HTTP version and its Authorization; "/seen" is answered with the names of the ports that a
request has come to, and "/unencrypted" leads to an http address.
"""
import pathlib
import socket
import ssl
import subprocess
import sys
import tempfile
import threading

import h2.config
import h2.connection
import h2.events

ADDRESSES = "IP:127.0.0.1,DNS:localhost"
seen = []


def openssl(folder, *arguments):
    subprocess.run(["openssl", *arguments], cwd=folder, check=True, capture_output=True)


def make_certificates(folder):
    key = ["-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes"]
    openssl(folder, "req", "-x509", *key, "-keyout", "authority.key", "-out", "authority.pem", "-subj",
            "/CN=Test authority", "-days", "2")
    (folder / "index.txt").touch()
    (folder / "ca.conf").write_text("[ca]\ndefault_ca=a\n[a]\ndatabase=index.txt\nnew_certs_dir=.\nrand_serial=yes\n"
                                    "default_md=sha256\nunique_subject=no\npolicy=p\nemail_in_dn=no\n[p]\n"
                                    "commonName=supplied\n")
    for name, addresses, days in [("good", ADDRESSES, ["-days", "2"]),
                                  ("expired", ADDRESSES, ["-startdate", "200101000000Z", "-enddate", "210101000000Z"]),
                                  ("wronghost", "DNS:elsewhere.example", ["-days", "2"])]:
        openssl(folder, "req", *key, "-keyout", f"{name}.key", "-out", f"{name}.csr", "-subj", f"/CN={name}")
        (folder / f"{name}.ext").write_text(f"subjectAltName={addresses}\n")
        openssl(folder, "ca", "-batch", "-notext", "-config", "ca.conf", "-cert", "authority.pem", "-keyfile",
                "authority.key", "-in", f"{name}.csr", "-out", f"{name}.pem", "-extfile", f"{name}.ext", *days)
    openssl(folder, "req", "-x509", *key, "-keyout", "selfsigned.key", "-out", "selfsigned.pem", "-subj",
            "/CN=selfsigned", "-days", "2", "-addext", f"subjectAltName={ADDRESSES}")


def answer(path, version, authorization):
    if path == "/unencrypted":
        return "302", [("location", "http://127.0.0.1:1/")], b""
    return "200", [], (" ".join(seen) if path == "/seen" else f"{version} {authorization}").encode()


def serve_http2(connection, name):
    machine = h2.connection.H2Connection(h2.config.H2Configuration(client_side=False, header_encoding="utf-8"))
    machine.initiate_connection()
    connection.sendall(machine.data_to_send())
    requests = {}
    while data := connection.recv(65536):
        for event in machine.receive_data(data):
            if isinstance(event, h2.events.RequestReceived):
                requests[event.stream_id] = dict(event.headers)
                seen.append(name)
            elif isinstance(event, h2.events.StreamEnded):
                headers = requests.pop(event.stream_id)
                status, extra, body = answer(headers[":path"], "HTTP/2", headers.get("authorization", "-"))
                machine.send_headers(event.stream_id, [(":status", status), *extra])
                machine.send_data(event.stream_id, body, end_stream=True)
        connection.sendall(machine.data_to_send())


def serve_http1(connection, name):
    stream = connection.makefile("rwb")
    _, path, version = stream.readline().decode().split()
    seen.append(name)
    headers = {}
    while line := stream.readline().strip():
        field, value = line.decode().split(":", 1)
        headers[field.lower()] = value.strip()
    stream.read(int(headers.get("content-length", 0)))
    status, extra, body = answer(path, version, headers.get("authorization", "-"))
    head = [("content-length", str(len(body))), ("connection", "close"), *extra]
    stream.write(f"HTTP/1.1 {status} .\r\n".encode() + b"".join(f"{n}: {v}\r\n".encode() for n, v in head) + b"\r\n" + body)
    stream.flush()


def serve(client, context, name):
    try:
        with context.wrap_socket(client, server_side=True) as connection:
            (serve_http2 if connection.selected_alpn_protocol() == "h2" else serve_http1)(connection, name)
    except (OSError, ValueError):
        pass  # A client that does not trust the certificate, or that has gone.


def listen(folder, name, certificate, protocols):
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(folder / f"{certificate}.pem", folder / f"{certificate}.key")
    context.set_alpn_protocols(protocols)
    listener = socket.create_server(("127.0.0.1", 0))

    def accept():
        while True:
            threading.Thread(target=serve, args=(listener.accept()[0], context, name), daemon=True).start()

    threading.Thread(target=accept, daemon=True).start()
    return listener.getsockname()[1]


def main():
    with tempfile.TemporaryDirectory(prefix="quillmoth-tls-") as name:
        folder = pathlib.Path(name)
        make_certificates(folder)
        ports = [listen(folder, "http1", "good", ["http/1.1"])]
        ports += [listen(folder, each, each, ["h2", "http/1.1"]) for each in ("good", "expired", "selfsigned", "wronghost")]
        print(folder / "authority.pem", *ports, flush=True)
        sys.stdin.read()


main()
