#!/usr/bin/python3
"""An FTP server for the tests: one folder, one user, on loopback, until it is ended.

Usage: pyftpd_server.py PORT FOLDER USER PASSWORD plain|explicit|implicit [CERTIFICATE]
The certificate file holds the key too. With TLS neither a plain logon nor plain data is taken.
"""

import sys

from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.handlers import FTPHandler, TLS_FTPHandler
from pyftpdlib.servers import FTPServer


class ImplicitTlsHandler(TLS_FTPHandler):
    """Speaks TLS from the first byte, before the greeting."""

    def handle(self):
        self.secure_connection(self.ssl_context)
        super().handle()


def main():
    port, folder, user, password, security = sys.argv[1:6]
    authorizer = DummyAuthorizer()
    authorizer.add_user(user, password, folder, perm="elradfmwMT")
    handler = {"plain": FTPHandler, "explicit": TLS_FTPHandler, "implicit": ImplicitTlsHandler}[security]
    handler.authorizer = authorizer
    handler.masquerade_address = "127.0.0.1"
    # Behind ten thousand data connections the kernel needs milliseconds to find a port that nothing waits on.
    handler.passive_ports = range(20000, 21000)
    if security != "plain":
        handler.certfile = sys.argv[6]
        handler.tls_control_required = True
        handler.tls_data_required = True
    FTPServer(("127.0.0.1", int(port)), handler).serve_forever()


main()
