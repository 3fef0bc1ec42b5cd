"""The FTP servers that the benchmarks start, each on a folder, on loopback."""

import os
import pathlib
import socket
import subprocess
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
SERVERS = ROOT / "build/servers"
VSFTPD = SERVERS / "usr/sbin/vsftpd"
PASSWORD = "secret"


def free_port():
    with socket.socket() as listener:
        listener.bind(("127.0.0.1", 0))
        return listener.getsockname()[1]


def wait_for(server, port):
    for _ in range(100):
        try:
            socket.create_connection(("127.0.0.1", port)).close()
            return server
        except OSError:
            time.sleep(0.05)
    raise SystemExit("a server does not answer")


def start_vsftpd(work, port):
    """For anonymous, on the folder "files" of `work`, which may be written to."""
    (work / "passwords").write_text(PASSWORD + "\n")
    options = {
        "listen": "YES", "listen_ipv6": "NO", "listen_address": "127.0.0.1", "listen_port": port, "background": "NO",
        "run_as_launching_user": "YES", "seccomp_sandbox": "NO", "isolate": "NO", "isolate_network": "NO",
        "anonymous_enable": "YES", "local_enable": "NO", "ftp_username": "nobody", "anon_root": work / "files",
        "secure_email_list_enable": "YES", "email_password_file": work / "passwords", "anon_world_readable_only": "NO",
        "secure_chroot_dir": work / "files", "pasv_address": "127.0.0.1", "connect_from_port_20": "NO",
        "write_enable": "YES", "anon_upload_enable": "YES", "anon_mkdir_write_enable": "YES",
        "anon_other_write_enable": "YES", "anon_umask": "022", "allow_writeable_chroot": "YES",
    }
    configuration = work / "vsftpd.conf"
    configuration.write_text("".join(f"{name}={value}\n" for name, value in options.items()))
    configuration.chmod(0o600)
    environment = dict(os.environ, LD_LIBRARY_PATH=str(SERVERS / "usr/lib/x86_64-linux-gnu"))
    return wait_for(subprocess.Popen([VSFTPD, configuration], env=environment), port)


def start_pyftpdlib(work, port):
    """The same with the other server."""
    script = ROOT / "tests/servers/pyftpd_server.py"
    command = ["/usr/bin/python3", script, str(port), work / "files", "anonymous", PASSWORD, "plain"]
    return wait_for(subprocess.Popen(command, stderr=subprocess.DEVNULL), port)


def start_inetutils(work, port):
    """The same, as root only and for the user "anna": the ftpd that inetd starts for each connection."""
    hashed = subprocess.check_output(["openssl", "passwd", "-6", PASSWORD], text=True).strip()
    nobody = 65534
    subprocess.check_call(["chown", "-R", str(nobody), work / "files"])
    (work / "passwd").write_text("root:x:0:0::/:/bin/sh\n"
                                 f"anna:{hashed}:{nobody}:{nobody}::{work / 'files'}:/bin/sh\n")
    (work / "group").write_text(f"root:x:0:\nnogroup:x:{nobody}:\n")
    # The users of the files above in place of the system's.
    environment = dict(os.environ, LD_PRELOAD=str(SERVERS / "usr/lib/x86_64-linux-gnu/libnss_wrapper.so"),
                       NSS_WRAPPER_PASSWD=str(work / "passwd"), NSS_WRAPPER_GROUP=str(work / "group"), LC_ALL="C")
    command = [SERVERS / "usr/bin/busybox-ftpd", "tcpsvd", "-E", "127.0.0.1", str(port), SERVERS / "usr/sbin/ftpd",
               "-q", "-u", "022", "-a", "default"]
    return wait_for(subprocess.Popen(command, env=environment, stderr=subprocess.DEVNULL), port)
