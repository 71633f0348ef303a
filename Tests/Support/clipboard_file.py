"""Opens and seals a clipboard file, knowing only its layout:
12 bytes of nonce, the ciphertext, 16 bytes of tag; AES-256-GCM, nothing else authenticated.

    clipboard_file.py open FILE KEY            prints the JSON
    clipboard_file.py seal FILE KEY JSON       KEY is hexadecimal
"""
import os
import sys

from cryptography.hazmat.primitives.ciphers.aead import AESGCM

action, path, key = sys.argv[1:4]
cipher = AESGCM(bytes.fromhex(key))
if action == "open":
    with open(path, "rb") as file:
        box = file.read()
    sys.stdout.buffer.write(cipher.decrypt(box[:12], box[12:], None))
else:
    nonce = os.urandom(12)
    with open(path, "wb") as file:
        file.write(nonce + cipher.encrypt(nonce, sys.argv[4].encode(), None))
