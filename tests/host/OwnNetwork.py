"""A network of this process's own, and of all that it starts, with one address besides the loopback: a server that carries
rooms is nobody's there but the test's, and offers what is not on the loopback."""
import ctypes
import fcntl
import os
import socket
import struct

ADDRESS = "10.97.0.1"
CLONE_NEWUSER, CLONE_NEWNET = 0x10000000, 0x40000000
SIOCGIFFLAGS, SIOCSIFFLAGS, SIOCSIFADDR, TUNSETIFF = 0x8913, 0x8914, 0x8916, 0x400454CA
IFF_UP, IFF_TUN, IFF_NO_PI = 0x1, 0x1, 0x1000
DEVICE = "rooms0"

# The device is there as long as its file is open.
device = None


def enter():
    """Once a process is enough. Whoever cannot have one gets an error."""
    global device
    if device is not None:
        return
    unshare()
    device = os.open("/dev/net/tun", os.O_RDWR | os.O_CLOEXEC)
    fcntl.ioctl(device, TUNSETIFF, struct.pack("16sH22x", DEVICE.encode(), IFF_TUN | IFF_NO_PI))
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as control:
        address = struct.pack("HH4s8x", socket.AF_INET, 0, socket.inet_aton(ADDRESS))
        fcntl.ioctl(control, SIOCSIFADDR, struct.pack("16s16s8x", DEVICE.encode(), address))
        for name in (DEVICE, "lo"):
            request = struct.pack("16sH22x", name.encode(), 0)
            flags = struct.unpack("16sH22x", fcntl.ioctl(control, SIOCGIFFLAGS, request))[1]
            fcntl.ioctl(control, SIOCSIFFLAGS, struct.pack("16sH22x", name.encode(), flags | IFF_UP))


def unshare():
    libc = ctypes.CDLL(None, use_errno=True)
    user, group = os.geteuid(), os.getegid()
    if libc.unshare(CLONE_NEWNET if user == 0 else CLONE_NEWUSER | CLONE_NEWNET) != 0:
        raise OSError(ctypes.get_errno(), "there is no network of one's own to be had")
    if user != 0:
        for file, text in (("setgroups", "deny"), ("uid_map", f"0 {user} 1"), ("gid_map", f"0 {group} 1")):
            with open(f"/proc/self/{file}", "w", encoding="ascii") as mapping:
                mapping.write(text)


def free_port():
    with socket.socket() as probe:
        probe.bind((ADDRESS, 0))
        return probe.getsockname()[1]
