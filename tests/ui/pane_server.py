#!/usr/bin/python3
"""An FTP server for the tests of the windows: real, on loopback, and bad-tempered where a file's name says so.

Usage: pane_server.py FOLDER USER PASSWORD [CERTIFICATE]
Prints "port N" when it accepts. A download whose name holds "stall" stops after half a MiB and never ends; one with
"cut" ends there together with the session, and one with "once" does so the first time only; what is to be done to a
name that holds "refuse" is refused; a folder that is there and holds "known" is no failure of MKD; an upload to a name
that holds "lose", or the listing of such a folder, loses the session when it begins. With a certificate (the file
holds the key too) the logon must be under TLS. It does not know the commands that ORVANE_LACKING_COMMANDS names; where
MDTM is one of them its listings tell the dates of its own zone, as most servers do. With ORVANE_SYSTEM it is such a
system, whose separator is the backslash. With ORVANE_SERVE_AS_NOBODY set the rights of files hold also where root runs
it. Names are bytes: what is not UTF-8 comes and goes as it is; a listing shows "%2F" as "/". It ends with its parent.

While it runs it looks at two files beside the folder: FOLDER.cut holds the number of the command, from now on, at which
the session is cut in place of an answer, once, and may name the one command to count; while FOLDER.closed is there
nobody can log on.
"""

import ctypes
import logging
import os
import signal
import sys

from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.filesystems import AbstractedFS
from pyftpdlib.handlers import DTPHandler, FTPHandler, TLS_FTPHandler, _AsyncChatNewStyle
from pyftpdlib.servers import FTPServer

TURNS_AFTER = 512 * 1024
PR_SET_PDEATHSIG = 1
NOBODY = 65534


# One that has its own separator of names.
SYSTEM = os.environ.get("ORVANE_SYSTEM")
SEEN = set()


def first_time(name):
    if name in SEEN:
        return False
    SEEN.add(name)
    return True


def served_folder():
    return sys.argv[1].rstrip("/")


def is_cut_now(command):
    name = served_folder() + ".cut"
    if not os.path.exists(name):
        return False
    with open(name, "r+") as file:
        number, *only = file.read().split()
        if only not in ([], [command]):
            return False
        left = int(number) - 1
        file.seek(0)
        file.truncate()
        file.write(" ".join([str(left), *only]))
    if left == 0:
        os.unlink(name)
    return left == 0


class SlantedNames(AbstractedFS):
    def format_list(self, *args, **options):
        return (line.replace(b"%2F", b"/") for line in super().format_list(*args, **options))


class MoodyTransfer(_AsyncChatNewStyle, DTPHandler):
    def __init__(self, sock, cmd_channel):
        super().__init__(sock, cmd_channel)
        self.sent = 0

    def use_sendfile(self):
        return False

    def send(self, data):
        name = self.file_obj.name if self.file_obj else ""
        count = super().send(data)
        self.sent += count
        if self.sent >= TURNS_AFTER:
            if "stall" in name:
                self.del_channel()
            elif "cut" in name or ("once" in name and first_time(name)):
                self.cmd_channel.close()
        return count


class MoodyHandler(FTPHandler):
    dtp_handler = MoodyTransfer
    abstracted_fs = SlantedNames
    unicode_errors = "surrogateescape"

    def push(self, s):
        _AsyncChatNewStyle.push(self, s.encode("utf8", self.unicode_errors))

    def pre_process_command(self, line, cmd, arg):
        if is_cut_now(cmd):
            self.close()
        else:
            super().pre_process_command(line, cmd, arg.replace("\\", "/") if SYSTEM else arg)

    def ftp_SYST(self, line):
        return self.respond("215 " + SYSTEM) if SYSTEM else super().ftp_SYST(line)

    def ftp_PASS(self, line):
        if os.path.exists(served_folder() + ".closed"):
            self.respond("530 Not now.")
            return None
        return super().ftp_PASS(line)

    def refuses(self, name, reply="550 Not this one."):
        if "refuse" not in name:
            return False
        self.respond(reply)
        return True

    def loses(self, name):
        if "lose" not in name:
            return False
        self.close()
        return True

    def ftp_STOR(self, file, mode="w"):
        if self.refuses(file):
            return None
        return None if self.loses(file) else super().ftp_STOR(file, mode)

    def ftp_LIST(self, path):
        return None if self.loses(path) else super().ftp_LIST(path)

    def ftp_RETR(self, file):
        return None if self.refuses(file) else super().ftp_RETR(file)

    def ftp_MKD(self, path):
        if "known" in path and os.path.isdir(path):
            self.respond("521 It is there.")
            return None
        return None if self.refuses(path) else super().ftp_MKD(path)

    def ftp_DELE(self, path):
        return None if self.refuses(path) else super().ftp_DELE(path)

    def ftp_CWD(self, path):
        return None if self.refuses(path) else super().ftp_CWD(path)

    def ftp_RNFR(self, path):
        return None if self.refuses(path) else super().ftp_RNFR(path)

    def ftp_SITE_CHMOD(self, path, mode):
        if self.refuses(path, "504 Not here."):
            return None
        return super().ftp_SITE_CHMOD(path, mode)


def give_up_root():
    os.setgroups([])
    os.setegid(NOBODY)
    os.seteuid(NOBODY)


def main():
    if os.environ.get("ORVANE_SERVE_AS_NOBODY") and os.geteuid() == 0:
        give_up_root()
    # After that: a change of the user clears it.
    ctypes.CDLL(None).prctl(PR_SET_PDEATHSIG, signal.SIGKILL)
    logging.basicConfig(handlers=[logging.NullHandler()])
    folder, user, password = sys.argv[1:4]
    authorizer = DummyAuthorizer()
    authorizer.add_user(user, password, folder, perm="elradfmwMT")
    handler = MoodyHandler
    if len(sys.argv) > 4:
        handler = TLS_FTPHandler
        handler.certfile = sys.argv[4]
        handler.tls_control_required = True
    lacking = os.environ.get("ORVANE_LACKING_COMMANDS", "").split()
    handler.proto_cmds = {name: what for name, what in handler.proto_cmds.items() if name not in lacking}
    handler.use_gmt_times = "MDTM" not in lacking
    handler.authorizer = authorizer
    handler.auth_failed_timeout = 0
    server = FTPServer(("127.0.0.1", 0), handler)
    print("port", server.address[1], flush=True)
    server.serve_forever()


main()
