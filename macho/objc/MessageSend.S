// The functions that compiled messages of a 64-bit macOS image call (see MessageSend.h). They are in assembly
// because they must preserve the stack and all registers that can contain arguments of any type.

        .text

// Saves every register that may contain an argument (rax contains the number of vector registers in use).
.macro SAVE_ARGUMENTS
        pushq   %rbp
        .cfi_def_cfa_offset 16
        .cfi_offset %rbp, -16
        movq    %rsp, %rbp
        .cfi_def_cfa_register %rbp
        subq    $0xC0, %rsp
        movq    %rdi, 0x00(%rsp)
        movq    %rsi, 0x08(%rsp)
        movq    %rdx, 0x10(%rsp)
        movq    %rcx, 0x18(%rsp)
        movq    %r8, 0x20(%rsp)
        movq    %r9, 0x28(%rsp)
        movq    %rax, 0x30(%rsp)
        movaps  %xmm0, 0x40(%rsp)
        movaps  %xmm1, 0x50(%rsp)
        movaps  %xmm2, 0x60(%rsp)
        movaps  %xmm3, 0x70(%rsp)
        movaps  %xmm4, 0x80(%rsp)
        movaps  %xmm5, 0x90(%rsp)
        movaps  %xmm6, 0xA0(%rsp)
        movaps  %xmm7, 0xB0(%rsp)
.endm

// Restores the registers and puts the method that was found into r11.
.macro RESTORE_ARGUMENTS
        movq    %rax, %r11
        movq    0x00(%rsp), %rdi
        movq    0x08(%rsp), %rsi
        movq    0x10(%rsp), %rdx
        movq    0x18(%rsp), %rcx
        movq    0x20(%rsp), %r8
        movq    0x28(%rsp), %r9
        movq    0x30(%rsp), %rax
        movaps  0x40(%rsp), %xmm0
        movaps  0x50(%rsp), %xmm1
        movaps  0x60(%rsp), %xmm2
        movaps  0x70(%rsp), %xmm3
        movaps  0x80(%rsp), %xmm4
        movaps  0x90(%rsp), %xmm5
        movaps  0xA0(%rsp), %xmm6
        movaps  0xB0(%rsp), %xmm7
        leave
        .cfi_def_cfa %rsp, 8
.endm

        .globl  macho_objc_msgSend
        .type   macho_objc_msgSend, @function
macho_objc_msgSend:
        .cfi_startproc
        testq   %rdi, %rdi
        je      1f
        SAVE_ARGUMENTS
        call    objc_msg_lookup@PLT
        RESTORE_ARGUMENTS
        jmp     *%r11
1:      xorl    %eax, %eax
        xorl    %edx, %edx
        pxor    %xmm0, %xmm0
        pxor    %xmm1, %xmm1
        ret
        .cfi_endproc
        .size   macho_objc_msgSend, . - macho_objc_msgSend

.section .note.GNU-stack, "", @progbits
